#include "embedded/attached/disc/disc_change.h"

#include <algorithm>

#include "embedded/attached/scsi/mode_pages.h"
#include "embedded/attached/scsi/sense.h"
#include "embedded/attached/scsi/write_parameters.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;

// A refusal that leaves the disc as it is, whatever the command was.
bool IsRefusedAtOnce(const Error& error) {
    if (error.kind == ErrorKind::Attention || error.kind == ErrorKind::Reserved) return true;
    if (error.kind != ErrorKind::Refused || !error.sense) return false;
    const uint8_t key = error.sense->key;
    return key == sense_key::kIllegalRequest || key == sense_key::kDataProtect ||
           key == sense_key::kNotReady || key == sense_key::kUnitAttention;
}

bool IsFaultOfTheDisc(const Error& error) {
    if (!error.sense) return false;
    const uint8_t key = error.sense->key;
    return key == sense_key::kMediumError || key == sense_key::kMiscompare ||
           key == sense_key::kVolumeOverflow;
}

// What sense data say of a command that was answered at once.
enum class Doing { Busy, Done, Attention, Failed };

Doing DoingOf(const Sense& sense) {
    constexpr uint8_t kNotReadyYet = 0x04;
    constexpr uint8_t kBusyWithIt = 0x16;  // with NO SENSE: an operation is in progress
    const SenseCode& code = sense.code;
    switch (code.key) {
        case sense_key::kNotReady:
            return MeaningOf(code).reaction == Reaction::Wait ? Doing::Busy : Doing::Failed;
        case sense_key::kNoSense:
            return code.asc == kNotReadyYet || code.ascq == kBusyWithIt || sense.progress ? Doing::Busy
                                                                                          : Doing::Done;
        case sense_key::kRecoveredError:
            return Doing::Done;
        case sense_key::kUnitAttention:
            return Doing::Attention;
        default:
            return Doing::Failed;
    }
}

}  // namespace

Result<Medium> DiscChange::ReadReadyMedium() {
    const auto ready = m_drive.WaitUntilReady(m_limits.ready);
    if (!ready) return ready.GetError();
    return ReadMedium(m_drive, m_limits);
}

Result<Medium> DiscChange::ReadWritableMedium() {
    auto medium = ReadReadyMedium();
    if (!medium) return medium;
    if (medium->recording == Recording::None) {
        return Refuse("cannot write this medium (" + std::string(MediaTypeName(medium->type)) + ")");
    }
    if (medium->isWriteProtected) {
        return Refuse(
            "finds the medium protected against writing; move its protection tab, or use another one");
    }
    return medium;
}

Result<Nothing> DiscChange::Do(const Cdb& cdb, milliseconds limit, Bytes dataOut) {
    auto done = m_drive.Do(cdb, limit, dataOut);
    if (done || !IsRefusedAtOnce(done.GetError())) m_isTouched = true;
    return done;
}

Result<Nothing> DiscChange::DoAndWait(const Cdb& cdb, milliseconds limit, DiscStep step, Bytes dataOut) {
    Tell(step, 0, 1);
    auto done = Do(cdb, limit, dataOut);
    if (!done) return done;
    return WaitUntilDone(limit, step);
}

Result<Nothing> DiscChange::WaitUntilDone(milliseconds limit, DiscStep step) {
    constexpr uint8_t kSenseLength = 252;
    constexpr milliseconds kFirstPause{200};
    constexpr milliseconds kLongestPause{2'000};
    constexpr int kMostAttentions = 16;
    Waiting& waiting = m_drive.GetWaiting();
    Waiting::Instant deadline = waiting.Now() + limit;
    std::optional<uint16_t> progress;
    milliseconds pause = kFirstPause;
    int attentions = 0;
    while (true) {
        const auto answer = m_drive.Ask(RequestSense(kSenseLength), kSenseLength, m_limits.look);
        if (!answer) return answer.GetError();
        const auto sense = DecodeSense(*answer);
        const Doing doing = sense ? DoingOf(*sense) : Doing::Done;
        if (doing == Doing::Done) break;
        if (doing == Doing::Attention && ++attentions < kMostAttentions) continue;
        if (doing != Doing::Busy) {
            return Error{ErrorKind::Refused, SenseSentence(m_drive.GetName(), sense->code), sense->code};
        }
        if (sense->progress && sense->progress != progress) {
            progress = sense->progress;
            deadline = waiting.Now() + m_limits.standstill;
        }
        if (progress) Tell(step, *progress, 65536);
        if (waiting.Now() + pause >= deadline) {
            return Error{ErrorKind::TimedOut,
                         m_drive.GetName() + " has not finished in time; look at it and try again",
                         {}};
        }
        waiting.Pause(pause);
        pause = std::min(2 * pause, kLongestPause);
    }
    // Some drives tell only here that they are busy.
    const auto left = std::chrono::ceil<milliseconds>(deadline - waiting.Now());
    auto ready = m_drive.WaitUntilReady(std::max(left, m_limits.look));
    if (ready) Tell(step, 1, 1);
    return ready;
}

Result<Nothing> DiscChange::SetNextSession(const Medium& medium, bool isAllowed) {
    constexpr uint16_t kLength = 256;
    if (medium.profile == nullptr || !medium.profile->hasWriteParameters) return Nothing();
    const auto answer = m_drive.Ask(ModeSense10(kWriteParametersPage, kLength), kLength, m_limits.look);
    if (!answer) return answer.GetError();
    const auto data = DecodeModeSense10(*answer, kWriteParametersPage);
    if (!data) return m_drive.Named(data.GetError());
    const auto parameters =
        WriteParameters(data->page, IsCompactDisc(medium) ? WriteType::TrackAtOnce : WriteType::Incremental,
                        isAllowed ? NextSession::Yes : NextSession::No);
    if (!parameters) return m_drive.Named(parameters.GetError());
    return m_drive.Do(ModeSelect10(static_cast<uint16_t>(parameters->size())), m_limits.look, *parameters);
}

Result<Nothing> DiscChange::BlankMedium(const Medium& medium, EraseExtent extent) {
    // A DVD-RW that is blanked quickly can only be written as a whole, in one go.
    const bool isQuick = extent == EraseExtent::Quick && IsCompactDisc(medium);
    return DoAndWait(Blank(isQuick ? BlankExtent::Minimal : BlankExtent::Disc, Answer::AtOnce),
                     m_limits.blank, DiscStep::Preparing);
}

Result<Nothing> DiscChange::CloseOpenTrack() {
    const auto medium = ReadMedium(m_drive, m_limits);
    if (!medium) return medium.GetError();
    if (!medium->hasOpenTrack) return Nothing();
    return DoAndWait(CloseTrackSession(CloseFunction::Track, medium->lastTrack, Answer::AtOnce),
                     m_limits.close, DiscStep::Closing);
}

Result<Nothing> DiscChange::CloseSession(CloseFunction function) {
    auto closed = CloseOpenTrack();
    if (!closed) return closed;
    return DoAndWait(CloseTrackSession(function, 0, Answer::AtOnce), m_limits.close, DiscStep::Closing);
}

void DiscChange::Tell(DiscStep step, uint64_t part, uint64_t whole) const {
    if (m_progress) m_progress(step, static_cast<unsigned>(part * 100 / std::max<uint64_t>(whole, 1)));
}

Error DiscChange::Refuse(const std::string& text) const {
    return {ErrorKind::Refused, m_drive.GetName() + " " + text, {}};
}

Error DiscChange::Condemn(const std::string& text) {
    m_isBad = true;
    return Refuse(text);
}

ChangeResult DiscChange::Finish(const Result<Nothing>& result) const {
    if (result) return {};
    const Error& error = result.GetError();
    if (m_isBad || (m_isTouched && IsFaultOfTheDisc(error))) return {SideAfter::Bad, error};
    return {m_isTouched ? SideAfter::Unknown : SideAfter::Untouched, error};
}

}  // namespace embedded::attached
