#include "embedded/attached/device/device.h"

#include <algorithm>

#include "embedded/attached/base/device_text.h"
#include "embedded/attached/scsi/medium_control.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstPause{100};
constexpr milliseconds kLongestPause{2'000};

// A device that reports more unit attentions than this in a row has a fault.
constexpr int kMostAttentions = 16;

// How often a command that the device broke off is tried in all.
constexpr int kMostAborts = 3;

bool IsBusy(uint8_t status) {
    return status == scsi_status::kBusy || status == scsi_status::kTaskSetFull;
}

bool IsGood(uint8_t status) {
    return status == scsi_status::kGood || status == scsi_status::kConditionMet;
}

std::optional<Sense> SenseOf(const Completion& completion) {
    return completion.status == scsi_status::kCheckCondition ? DecodeSense(completion.sense) : std::nullopt;
}

}  // namespace

Device::Device(std::unique_ptr<Transport> transport, std::string name, Waiting& waiting)
    : m_transport(std::move(transport)), m_name(std::move(name)), m_waiting(waiting) {}

Result<std::vector<uint8_t>> Device::Ask(const Cdb& cdb, size_t length, Milliseconds limit) {
    std::vector<uint8_t> answer(length);
    const auto completion = Execute(cdb, answer, {}, limit, Purpose::Look);
    if (!completion) return completion.GetError();
    answer.resize(std::min(length, completion->transferred));
    return answer;
}

Result<Nothing> Device::Do(const Cdb& cdb, Milliseconds limit, Bytes dataOut) {
    const auto completion = Execute(cdb, {}, dataOut, limit, Purpose::Act);
    if (!completion) return completion.GetError();
    if (completion->transferred < dataOut.size()) {
        return Error{ErrorKind::BadAnswer, m_name + " took only a part of the data of " + cdb.GetName(), {}};
    }
    return Nothing();
}

Result<Nothing> Device::WaitUntilReady(Milliseconds limit) {
    const auto answer = Ask(TestUnitReady(), 0, limit);
    if (!answer) return answer.GetError();
    return Nothing();
}

Result<Completion> Device::Execute(const Cdb& cdb, std::span<uint8_t> dataIn, Bytes dataOut,
                                   Milliseconds limit, Purpose purpose) {
    const Waiting::Instant deadline = m_waiting.Now() + limit;
    milliseconds pause = kFirstPause;
    int attentions = 0;
    int aborts = 0;
    while (true) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - m_waiting.Now());
        auto completion =
            SendConnected({cdb.GetBytes(), dataIn, dataOut, std::max(left, milliseconds(1))}, purpose);
        if (!completion) return Named(completion.GetError());
        const auto sense = SenseOf(*completion);
        const bool isRecovered = sense && sense->code.key == sense_key::kRecoveredError && !sense->isDeferred;
        if (IsGood(completion->status) || isRecovered) return completion;

        const Error error = StatusError(cdb, *completion);
        const Reaction reaction =
            sense && !sense->isDeferred ? MeaningOf(sense->code).reaction : Reaction::Fail;
        if (reaction == Reaction::Repeat) {
            m_changes.insert(MeaningOf(sense->code).change);
            if (purpose == Purpose::Act || ++attentions >= kMostAttentions) return error;
            continue;
        }
        const bool isAborted = completion->status == scsi_status::kTaskAborted ||
                               (sense && sense->code.key == sense_key::kAbortedCommand);
        const bool canTryAgain = isAborted && purpose == Purpose::Look && ++aborts < kMostAborts;
        if (!canTryAgain && reaction != Reaction::Wait && !IsBusy(completion->status)) return error;
        if (m_waiting.Now() + pause >= deadline) return error;
        m_waiting.Pause(pause);
        pause = std::min(2 * pause, kLongestPause);
    }
}

// A connection that is known to be lost is made anew before anything is sent, and what only looks is sent
// once more when the connection is lost on the way.
Result<Completion> Device::SendConnected(const Command& command, Purpose purpose) {
    if (!m_transport->IsConnected()) {
        const auto connected = m_transport->Reconnect();
        if (!connected) return connected.GetError();
        m_changes.insert(Change::Reset);
    }
    auto completion = m_transport->Send(command);
    if (completion || completion.GetError().kind != ErrorKind::Lost || purpose == Purpose::Act)
        return completion;
    const auto connected = m_transport->Reconnect();
    if (!connected) return connected.GetError();
    m_changes.insert(Change::Reset);
    return m_transport->Send(command);
}

Error Device::Named(const Error& error) const {
    if (error.text.starts_with(m_name)) return error;
    return {error.kind, m_name + ": " + error.text, error.sense};
}

Error Device::StatusError(const Cdb& cdb, const Completion& completion) const {
    const auto sense = SenseOf(completion);
    if (sense && sense->isDeferred) {
        return {ErrorKind::Refused, SenseSentence(m_name + ", during an earlier command,", sense->code),
                sense->code};
    }
    if (sense) {
        const bool isAttention = MeaningOf(sense->code).reaction == Reaction::Repeat;
        return {isAttention ? ErrorKind::Attention : ErrorKind::Refused, SenseSentence(m_name, sense->code),
                sense->code};
    }
    switch (completion.status) {
        case scsi_status::kReservationConflict:
            return {ErrorKind::Reserved, m_name + " is reserved by another host; end what runs there", {}};
        case scsi_status::kBusy:
        case scsi_status::kTaskSetFull:
            return {ErrorKind::TimedOut, m_name + " is busy; try again later", {}};
        case scsi_status::kTaskAborted:
            return {ErrorKind::Refused,
                    m_name + " broke off " + cdb.GetName() + " on behalf of another host; try again",
                    {}};
        default:
            return {ErrorKind::BadAnswer,
                    m_name + " ends " + cdb.GetName() + " with status " + HexText(completion.status, 2) +
                        " and does not say why",
                    {}};
    }
}

}  // namespace embedded::attached
