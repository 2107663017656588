#include "embedded/remote/client/remote_session.h"

#include <algorithm>
#include <array>
#include <random>
#include <utility>
#include <vector>

#include "embedded/model/refusal.h"
#include "embedded/model/strings.h"
#include "embedded/remote/protocol/fields.h"
#include "embedded/service/arguments.h"

namespace embedded::remote {
namespace {

// How many items the first step of a walk reads ahead, by what factor the next ones grow, and the limits.
constexpr uint32_t kFirstVolumes = 128;
constexpr uint32_t kFirstSlots = 64;
constexpr uint32_t kGrowth = 8;
constexpr uint32_t kMostVolumes = 8192;
constexpr uint32_t kMostSlots = 4096;
// After a change the items up to the next change are enough, which forgets the others.
constexpr uint32_t kAfterChange = 16;

constexpr const char* kGetNextVolume = "KrvGetNextVolume";

std::string RandomName() {
    std::random_device random;
    std::string name;
    constexpr int kBytes = 16;
    for (int i = 0; i < kBytes; ++i)
        name += HexDigits(static_cast<char>(random() & 0xFFU));
    return name;
}

// The other side's own numbers, checked: of a key that the caller has filled.
template <typename Key>
json::array_t ArgumentsOf(const Key* key, const char* function) {
    CheckRecord(key, function, "key");
    json::array_t arguments;
    Append(arguments, *key);
    return arguments;
}

// The slot that the key names; empty when it names none. Also for a null key, which is refused elsewhere.
template <typename Key>
json::array_t SlotOf(const Key* key) {
    if constexpr (requires { key->slot; }) {
        if (key != nullptr) return {key->jukeboxId, key->magazine, key->slot};
    }
    return {};
}

Request LookFor(const char* function, json::array_t arguments, uint32_t ahead) {
    Request request;
    request.function = function;
    request.arguments = std::move(arguments);
    request.ahead = ahead;
    return request;
}

void ThrowFailure(const Answer& answer) {
    if (answer.failure.has_value()) throw Refusal(answer.failure->code, answer.failure->text);
}

template <typename Work>
auto Decoded(const KnownServer& server, const Work& work) {
    try {
        return work();
    } catch (const ProtocolFailure& failure) {
        throw Refuse(Code::NotTheProtocol, {server.name, failure.what()});
    }
}

// Names a change for the other side.
struct ChangeOfCaller {
    std::string caller;
    uint64_t number = 0;
};

// Asks whether the change was made, and makes sure that it is not made later.
bool IsMade(const KnownServer& server, const ChangeOfCaller& change) {
    Connection connection(server);
    Request request;
    request.function = kSettle;
    request.arguments = {BytesOf(server.place.server), BytesOf(change.caller), change.number};
    const Answer answer = connection.AskLast(std::move(request));
    ThrowFailure(answer);
    return Decoded(server, [&] {
        if (answer.result.size() != 1 || !answer.result[0].is_boolean())
            throw ProtocolFailure("whether a change was made is missing");
        return answer.result[0].get<bool>();
    });
}

// Finds out what became of a change whose answer is lost, and throws that.
[[noreturn]] void Settle(const KnownServer& server, const ChangeOfCaller& change, const std::string& reason) {
    Code outcome = Code::LostInDoubt;
    try {
        outcome = IsMade(server, change) ? Code::LostButMade : Code::LostNotMade;
    } catch (const Refusal&) {
        outcome = Code::LostInDoubt;
    }
    throw Refuse(outcome, {server.name, reason});
}

}  // namespace

RemoteSession::RemoteSession(const KnownServer& server)
    : m_server(server), m_client(RandomName()), m_connection(std::make_unique<Connection>(server)) {
    Request request;
    request.function = "KrvSessionCreate";
    request.arguments = {BytesOf(server.place.server), BytesOf(m_client)};
    ThrowFailure(m_connection->Ask(std::move(request)));
}

Answer RemoteSession::AskFor(Request request) {
    if (m_loss != nullptr) std::rethrow_exception(m_loss);
    try {
        return m_connection->Ask(std::move(request));
    } catch (const Refusal& refusal) {
        // A call that could not be sent leaves the connection as it was.
        if (static_cast<Code>(refusal.GetCode()) == Code::InvalidCall) throw;
        GiveUp();
        throw;
    }
}

void RemoteSession::GiveUp() {
    m_loss = std::current_exception();
    m_connection.reset();
    m_ahead.Forget();
}

void RemoteSession::KeepAhead(const Answer& answer) {
    if (answer.ahead.is_null()) return;
    m_ahead.Keep(Decoded(m_server, [&] { return AheadFrom(answer.ahead); }), answer.asked);
}

json RemoteSession::Look(const char* function, json::array_t arguments, uint32_t ahead,
                         std::optional<Failure>& failure) {
    Answer answer = AskFor(LookFor(function, std::move(arguments), ahead));
    failure = std::move(answer.failure);
    KeepAhead(answer);
    return std::move(answer.result);
}

json RemoteSession::Look(const char* function, json::array_t arguments, uint32_t ahead) {
    std::optional<Failure> failure;
    json result = Look(function, std::move(arguments), ahead, failure);
    if (failure.has_value()) throw Refusal(failure->code, failure->text);
    return result;
}

template <typename Key, typename Record>
void RemoteSession::Describe(const char* function, const Key* key, Record* record, uint32_t ahead) {
    std::optional<Failure> failure;
    const json result = Look(function, ArgumentsOf(key, function), ahead, failure);
    if (!result.empty()) {
        *record = Decoded(m_server, [&] {
            FieldReader fields(result);
            return Take<Record>(fields);
        });
    }
    if (failure.has_value()) throw Refusal(failure->code, failure->text);
}

void RemoteSession::Change(const char* function, json::array_t arguments, json::array_t slot) {
    const std::scoped_lock lock(m_mutex);
    m_ahead.Forget();
    // A walk over volumes goes on with volumes, wherever they lie.
    if (!slot.empty() && m_lastLook.size() != 1) m_lastLook = std::move(slot);
    Request request;
    request.function = function;
    request.arguments = std::move(arguments);
    request.change = ++m_lastChange;
    AskAheadAfterChange(request);
    const bool wasLost = m_loss != nullptr;
    Answer answer;
    try {
        answer = AskFor(std::move(request));
    } catch (const Refusal& refusal) {
        if (wasLost || m_loss == nullptr) throw;
        Settle(m_server, {m_client, m_lastChange}, refusal.GetText());
    }
    try {
        KeepAhead(answer);
    } catch (const Refusal&) {
        GiveUp();  // what became of the change is known all the same
    }
    ThrowFailure(answer);
}

template <typename Key>
void RemoteSession::ChangeItem(const char* function, const Key* key) {
    Change(function, ArgumentsOf(key, function), SlotOf(key));
}

void RemoteSession::AskAheadAfterChange(Request& request) const {
    if (m_lastLook.empty()) return;
    request.ahead = kAfterChange;
    request.from = m_lastLook;
}

uint32_t RemoteSession::SlotsAhead(const SlotKey& key) {
    const bool goesOn = m_lastSlotJukebox == key.jukeboxId && m_slotsAhead > 0;
    m_slotsAhead = goesOn ? std::min(m_slotsAhead * kGrowth, kMostSlots) : kFirstSlots;
    m_lastSlotJukebox = key.jukeboxId;
    return m_slotsAhead;
}

uint32_t RemoteSession::VolumesAhead(uint32_t previous) {
    const bool goesOn = previous != 0 && previous == m_lastNextVolume && m_volumesAhead > 0;
    m_volumesAhead = goesOn ? MoreVolumesAhead() : kFirstVolumes;
    return m_volumesAhead;
}

uint32_t RemoteSession::MoreVolumesAhead() const {
    return std::min(m_volumesAhead * kGrowth, kMostVolumes);
}

void RemoteSession::AskForNextVolumesEarly(uint32_t first) {
    const std::optional<uint32_t> last = m_ahead.LastVolumeOfRow(first);
    if (!last.has_value() || m_volumesAhead <= kFirstVolumes) return;
    try {
        m_connection->AskEarly(LookFor(kGetNextVolume, {*last}, MoreVolumesAhead()));
    } catch (const Refusal&) {
        GiveUp();  // the answer of this call is there all the same
    }
}

void RemoteSession::SessionClose() {
    const std::scoped_lock lock(m_mutex);
    if (m_loss != nullptr) std::rethrow_exception(m_loss);
    Request request;
    request.function = "KrvSessionClose";
    const std::unique_ptr<Connection> connection = std::move(m_connection);
    m_loss = std::make_exception_ptr(Refuse(Code::ConnectionLost, {m_server.name, "the session is closed"}));
    ThrowFailure(connection->AskLast(std::move(request)));
}

// ---- Looking

void RemoteSession::GetNextJukebox(uint32_t previousId, uint32_t* nextId) {
    constexpr const char* kFunction = "KrvGetNextJukebox";
    const std::scoped_lock lock(m_mutex);
    CheckPointer(nextId, kFunction, "next ID");
    const json result = Look(kFunction, {previousId}, 0);
    *nextId = Decoded(m_server, [&] { return FieldReader(result).Number<uint32_t>(); });
}

void RemoteSession::GetJukebox(const JukeboxKey* key, JukeboxRecord* record) {
    constexpr const char* kFunction = "KrvGetJukebox";
    const std::scoped_lock lock(m_mutex);
    CheckRecord(key, kFunction, "key");
    CheckRecord(record, kFunction, "record");
    m_ahead.ForgetWhenOld();
    if (const JukeboxRecord* const known = m_ahead.Find(*key)) {
        *record = *known;
        return;
    }
    Describe(kFunction, key, record, 1);
}

void RemoteSession::GetMagazine(const MagazineKey* key, MagazineRecord* record) {
    constexpr const char* kFunction = "KrvGetMagazine";
    const std::scoped_lock lock(m_mutex);
    CheckRecord(key, kFunction, "key");
    CheckRecord(record, kFunction, "record");
    m_ahead.ForgetWhenOld();
    if (const MagazineRecord* const known = m_ahead.Find(*key)) {
        *record = *known;
        return;
    }
    Describe(kFunction, key, record, 0);
}

void RemoteSession::GetDrive(const DriveKey* key, DriveRecord* record) {
    constexpr const char* kFunction = "KrvGetDrive";
    const std::scoped_lock lock(m_mutex);
    CheckRecord(key, kFunction, "key");
    CheckRecord(record, kFunction, "record");
    m_ahead.ForgetWhenOld();
    if (const DriveRecord* const known = m_ahead.Find(*key)) {
        *record = *known;
        return;
    }
    Describe(kFunction, key, record, 0);
}

void RemoteSession::GetSlot(const SlotKey* key, SlotRecord* record) {
    constexpr const char* kFunction = "KrvGetSlot";
    const std::scoped_lock lock(m_mutex);
    CheckRecord(key, kFunction, "key");
    CheckRecord(record, kFunction, "record");
    m_lastLook = SlotOf(key);
    m_ahead.ForgetWhenOld();
    if (const SlotRecord* const known = m_ahead.Find(*key)) {
        *record = *known;
        return;
    }
    Describe(kFunction, key, record, SlotsAhead(*key));
}

void RemoteSession::GetSide(const SideKey* key, SideRecord* record) {
    constexpr const char* kFunction = "KrvGetSide";
    const std::scoped_lock lock(m_mutex);
    CheckRecord(key, kFunction, "key");
    CheckRecord(record, kFunction, "record");
    m_lastLook = SlotOf(key);
    m_ahead.ForgetWhenOld();
    if (const AheadSide* const known = m_ahead.Find(*key)) {
        *record = known->record;
        if (known->failure.has_value()) throw Refusal(known->failure->code, known->failure->text);
        return;
    }
    Describe(kFunction, key, record, SlotsAhead({sizeof(SlotKey), key->jukeboxId, key->magazine, key->slot}));
}

void RemoteSession::GetNextVolume(uint32_t previousId, uint32_t* nextId) {
    const std::scoped_lock lock(m_mutex);
    CheckPointer(nextId, kGetNextVolume, "next ID");
    m_ahead.ForgetWhenOld();
    if (const std::optional<uint32_t> known = m_ahead.FindVolumeAfter(previousId)) {
        *nextId = *known;
    } else {
        const json result = Look(kGetNextVolume, {previousId}, VolumesAhead(previousId));
        *nextId = Decoded(m_server, [&] { return FieldReader(result).Number<uint32_t>(); });
        AskForNextVolumesEarly(*nextId);
    }
    m_lastNextVolume = *nextId;
}

void RemoteSession::VolumeDetail(uint32_t volumeId, VolumeRecord* record) {
    constexpr const char* kFunction = "KrvVolumeDetail";
    const std::scoped_lock lock(m_mutex);
    CheckRecord(record, kFunction, "record");
    m_lastLook = {volumeId};
    m_ahead.ForgetWhenOld();
    if (const AheadVolume* const known = m_ahead.FindVolume(volumeId)) {
        *record = known->record;
        return;
    }
    const json result = Look(kFunction, {volumeId}, 1);
    *record = Decoded(m_server, [&] {
        FieldReader fields(result);
        return Take<VolumeRecord>(fields);
    });
}

void RemoteSession::VolumeAspects(uint32_t volumeId, char* buffer, uint32_t bufferSize,
                                  uint32_t* requiredSize) {
    constexpr const char* kFunction = "KrvVolumeAspects";
    const std::scoped_lock lock(m_mutex);
    CheckPointer(requiredSize, kFunction, "required size");
    if (bufferSize > 0) CheckPointer(buffer, kFunction, "buffer");
    m_ahead.ForgetWhenOld();
    if (const AheadVolume* const known = m_ahead.FindVolume(volumeId)) {
        CopyAspects(known->aspects, buffer, bufferSize, *requiredSize);
        return;
    }
    const json result = Look(kFunction, {volumeId}, 1);
    const std::string list = Decoded(m_server, [&] { return FieldReader(result).Text(); });
    CopyAspects(list, buffer, bufferSize, *requiredSize);
}

void RemoteSession::VolumeLocations(uint32_t volumeId, SideKey* locations, uint32_t always1,
                                    uint32_t* count) {
    constexpr const char* kFunction = "KrvVolumeLocations";
    const std::scoped_lock lock(m_mutex);
    CheckPointer(count, kFunction, "count");
    CheckPointer(locations, kFunction, "location array");
    CheckConstant(always1 == 1, kFunction, "fourth argument");
    CheckRecord(locations, kFunction, "location");
    m_lastLook = {volumeId};
    m_ahead.ForgetWhenOld();
    const AheadVolume* const known = m_ahead.FindVolume(volumeId);
    if (known != nullptr && !known->places.empty()) {
        CopyLocations(known->places, locations, *count, kFunction);
        return;
    }
    const json result = Look(kFunction, {volumeId}, 1);
    const std::vector<SideKey> places = Decoded(m_server, [&] {
        std::vector<SideKey> found;
        FieldReader fields(result);
        while (!fields.IsAtEnd())
            found.push_back(Take<SideKey>(fields));
        return found;
    });
    CopyLocations(places, locations, *count, kFunction);
}

// ---- Changing volumes

void RemoteSession::VolumeSetAspects(uint32_t volumeId, const char* text, uint32_t always1) {
    constexpr const char* kFunction = "KrvVolumeSetAspects";
    CheckPointer(text, kFunction, "text");
    CheckConstant(always1 == 1, kFunction, "fourth argument");
    Change(kFunction, {volumeId, BytesOf(text)});
}

void RemoteSession::VolumeActivate(uint32_t volumeId, const void* alwaysNull) {
    constexpr const char* kFunction = "KrvVolumeActivate";
    CheckConstant(alwaysNull == nullptr, kFunction, "third argument");
    Change(kFunction, {volumeId});
}

void RemoteSession::VolumeDeactivate(uint32_t volumeId) {
    Change("KrvVolumeDeactivate", {volumeId});
}

void RemoteSession::VolumeFormat(const SideKey* key, const FormatOptions* options) {
    constexpr const char* kFunction = "KrvVolumeFormat";
    json::array_t arguments = ArgumentsOf(key, kFunction);
    CheckFormatOptions(options, kFunction);
    Append(arguments, *options);
    Change(kFunction, std::move(arguments), SlotOf(key));
}

void RemoteSession::JukeboxSetName(const JukeboxKey* key, const char* newName) {
    constexpr const char* kFunction = "KrvJukeboxSetName";
    json::array_t arguments = ArgumentsOf(key, kFunction);
    CheckPointer(newName, kFunction, "new name");
    arguments.push_back(BytesOf(newName));
    Change(kFunction, std::move(arguments));
}

void RemoteSession::VolumeErase(const SideKey* key) {
    ChangeItem("KrvVolumeErase", key);
}

void RemoteSession::VolumeFinalize(const SideKey* key) {
    ChangeItem("KrvVolumeFinalize", key);
}

void RemoteSession::MediaImport(const SlotKey* key) {
    ChangeItem("KrvMediaImport", key);
}

void RemoteSession::MediaExport(const SlotKey* key) {
    ChangeItem("KrvMediaExport", key);
}

void RemoteSession::MediaScan(const SideKey* key) {
    ChangeItem("KrvMediaScan", key);
}

void RemoteSession::ActivateJukebox(const JukeboxKey* key) {
    ChangeItem("KrvActivateJukebox", key);
}

void RemoteSession::DeactivateJukebox(const JukeboxKey* key) {
    ChangeItem("KrvDeactivateJukebox", key);
}

void RemoteSession::ActivateMagazine(const MagazineKey* key) {
    ChangeItem("KrvActivateMagazine", key);
}

void RemoteSession::DeactivateMagazine(const MagazineKey* key) {
    ChangeItem("KrvDeactivateMagazine", key);
}

void RemoteSession::ActivateDrive(const DriveKey* key) {
    ChangeItem("KrvActivateDrive", key);
}

void RemoteSession::DeactivateDrive(const DriveKey* key) {
    ChangeItem("KrvDeactivateDrive", key);
}

// ---- The service itself

void RemoteSession::ServiceStop() {
    Change("KrvServiceStop", {});
}

void RemoteSession::ServiceRestart() {
    Change("KrvServiceRestart", {});
}

void StartRemoteService(const KnownServer& server) {
    const ChangeOfCaller change{RandomName(), 1};
    Connection connection(server);
    (void)connection.GetGreeting();
    Request request;
    request.function = "KrvServiceStart";
    request.arguments = {BytesOf(server.place.server), BytesOf(change.caller)};
    request.change = change.number;
    Answer answer;
    try {
        answer = connection.AskLast(std::move(request));
    } catch (const Refusal& refusal) {
        Settle(server, change, refusal.GetText());
    }
    ThrowFailure(answer);
}

}  // namespace embedded::remote
