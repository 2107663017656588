// The 31 functions of the client library, answered by the one FakeLibrary of the process.
#include <algorithm>

#include "tests/fake_library/call_text.h"
#include "tests/fake_library/fake_library.h"

namespace krvfake {
namespace {

FakeLibrary& Fake() {
    return FakeLibrary::Instance();
}

// A call that changes something: recorded, checked, and successful unless the script says otherwise.
template <typename Key>
KrvBool ActOn(KrvCallContext* context, const char* function, const Key* key) {
    return Fake().Perform(
        context, function, [&] { return Describe(*key); },
        [&](Complaints& complaints) { CheckKey(key, complaints); }, [] { return Answer{}; });
}

KrvBool ActOnVolume(KrvCallContext* context, const char* function, uint32_t volumeId) {
    return Fake().Perform(
        context, function, [&] { return Argument("V", static_cast<int32_t>(volumeId)); }, [](Complaints&) {},
        [] { return Answer{}; });
}

// A call that fills a record from a key.
template <typename Key, typename Record>
KrvBool Look(KrvCallContext* context, const char* function, const Key* key, Record* record,
             Answer (Answers::*answer)(const Key&, Record&)) {
    return Fake().Perform(
        context, function, [&] { return Describe(*key); },
        [&](Complaints& complaints) {
            CheckKey(key, complaints);
            CheckPresets(*record, complaints);
        },
        [&] { return (Fake().GetAnswers().*answer)(*key, *record); });
}

// One step of an enumeration.
KrvBool Step(KrvCallContext* context, const char* function, uint32_t previousId, uint32_t* nextId,
             uint32_t (Answers::*next)(uint32_t)) {
    return Fake().Perform(
        context, function, [&] { return Argument("previous", static_cast<int32_t>(previousId)); },
        [&](Complaints& complaints) {
            if (previousId == 0) Expect(*nextId, 0, "the next ID before the first step", complaints);
        },
        [&] {
            *nextId = (Fake().GetAnswers().*next)(previousId);
            return Answer{};
        });
}

std::string NoArguments() {
    return {};
}

// A call with nothing but the context, perhaps a server name.
template <typename Describe>
KrvBool ControlService(KrvCallContext* context, const char* function, Describe describe) {
    return Fake().Perform(
        context, function, describe, [](Complaints&) {}, [] { return Answer{}; });
}

}  // namespace
}  // namespace krvfake

using krvfake::Answer;
using krvfake::Answers;
using krvfake::Argument;
using krvfake::Complaints;
using krvfake::Expect;
using krvfake::Fake;
using krvfake::TextArgument;

extern "C" {

KrvBool KrvSessionCreate(KrvCallContext* context, const char* serverName, KrvSession* session) {
    return Fake().Perform(
        context, "KrvSessionCreate", [&] { return TextArgument("server", serverName); }, [](Complaints&) {},
        [&] {
            *session = Fake().OpenSession();
            return Answer{};
        });
}

KrvBool KrvSessionClose(KrvCallContext* context) {
    const KrvBool result = krvfake::ControlService(context, "KrvSessionClose", krvfake::NoArguments);
    Fake().CloseSession();
    return result;
}

KrvBool KrvGetNextJukebox(KrvCallContext* context, uint32_t previousId, uint32_t* nextId) {
    return krvfake::Step(context, "KrvGetNextJukebox", previousId, nextId, &Answers::NextJukebox);
}

KrvBool KrvGetJukebox(KrvCallContext* context, const JukeboxKey* key, JukeboxRecord* record) {
    return krvfake::Look(context, "KrvGetJukebox", key, record, &Answers::DescribeJukebox);
}

KrvBool KrvGetMagazine(KrvCallContext* context, const MagazineKey* key, MagazineRecord* record) {
    return krvfake::Look(context, "KrvGetMagazine", key, record, &Answers::DescribeMagazine);
}

KrvBool KrvGetDrive(KrvCallContext* context, const DriveKey* key, DriveRecord* record) {
    return krvfake::Look(context, "KrvGetDrive", key, record, &Answers::DescribeDrive);
}

KrvBool KrvGetSlot(KrvCallContext* context, const SlotKey* key, SlotRecord* record) {
    return krvfake::Look(context, "KrvGetSlot", key, record, &Answers::DescribeSlot);
}

KrvBool KrvGetSide(KrvCallContext* context, const SideKey* key, SideRecord* record) {
    return krvfake::Look(context, "KrvGetSide", key, record, &Answers::DescribeSide);
}

KrvBool KrvGetNextVolume(KrvCallContext* context, uint32_t previousId, uint32_t* nextId) {
    return krvfake::Step(context, "KrvGetNextVolume", previousId, nextId, &Answers::NextVolume);
}

KrvBool KrvVolumeDetail(KrvCallContext* context, uint32_t volumeId, VolumeRecord* record) {
    return Fake().Perform(
        context, "KrvVolumeDetail", [&] { return Argument("V", static_cast<int32_t>(volumeId)); },
        [&](Complaints& complaints) { krvfake::CheckPresets(*record, complaints); },
        [&] { return Fake().GetAnswers().DescribeVolume(volumeId, *record); });
}

KrvBool KrvVolumeAspects(KrvCallContext* context, uint32_t volumeId, char* buffer, uint32_t bufferSize,
                         uint32_t* requiredSize) {
    return Fake().Perform(
        context, "KrvVolumeAspects",
        [&] { return Argument("V", static_cast<int32_t>(volumeId)) + Argument("bufferSize", bufferSize); },
        [&](Complaints& complaints) {
            // The first call comes with one byte and 0, the second with what the first one answered.
            if (bufferSize == 1 && *requiredSize == 0) return;
            Expect(*requiredSize, bufferSize, "the required size before the call", complaints);
        },
        [&] { return Fake().GetAnswers().ListAspects(volumeId, buffer, bufferSize, *requiredSize); });
}

KrvBool KrvVolumeLocations(KrvCallContext* context, uint32_t volumeId, SideKey* locations, uint32_t always1,
                           uint32_t* count) {
    const uint32_t room = std::max<uint32_t>(1, *count);
    return Fake().Perform(
        context, "KrvVolumeLocations",
        [&] { return Argument("V", static_cast<int32_t>(volumeId)) + Argument("room", room); },
        [&](Complaints& complaints) {
            Expect(always1, 1, "the third argument", complaints);
            krvfake::CheckLocationPresets(locations, room, complaints);
        },
        [&] { return Fake().GetAnswers().ListLocations(volumeId, locations, room, *count); });
}

KrvBool KrvVolumeSetAspects(KrvCallContext* context, uint32_t volumeId, const char* text, uint32_t always1) {
    return Fake().Perform(
        context, "KrvVolumeSetAspects",
        [&] { return Argument("V", static_cast<int32_t>(volumeId)) + TextArgument("text", text); },
        [&](Complaints& complaints) { Expect(always1, 1, "the third argument", complaints); },
        [] { return Answer{}; });
}

KrvBool KrvVolumeActivate(KrvCallContext* context, uint32_t volumeId, const void* alwaysNull) {
    return Fake().Perform(
        context, "KrvVolumeActivate", [&] { return Argument("V", static_cast<int32_t>(volumeId)); },
        [&](Complaints& complaints) {
            if (alwaysNull != nullptr) complaints.emplace_back("the second argument is not null");
        },
        [] { return Answer{}; });
}

KrvBool KrvVolumeDeactivate(KrvCallContext* context, uint32_t volumeId) {
    return krvfake::ActOnVolume(context, "KrvVolumeDeactivate", volumeId);
}

KrvBool KrvVolumeErase(KrvCallContext* context, const SideKey* key) {
    return krvfake::ActOn(context, "KrvVolumeErase", key);
}

KrvBool KrvVolumeFinalize(KrvCallContext* context, const SideKey* key) {
    return krvfake::ActOn(context, "KrvVolumeFinalize", key);
}

KrvBool KrvVolumeFormat(KrvCallContext* context, const SideKey* key, const FormatOptions* options) {
    return Fake().Perform(
        context, "KrvVolumeFormat", [&] { return krvfake::Describe(*key) + krvfake::Describe(*options); },
        [&](Complaints& complaints) {
            krvfake::CheckKey(key, complaints);
            krvfake::CheckFormatOptions(*options, complaints);
        },
        [] { return Answer{}; });
}

KrvBool KrvMediaImport(KrvCallContext* context, const SlotKey* key) {
    return krvfake::ActOn(context, "KrvMediaImport", key);
}

KrvBool KrvMediaExport(KrvCallContext* context, const SlotKey* key) {
    return krvfake::ActOn(context, "KrvMediaExport", key);
}

KrvBool KrvMediaScan(KrvCallContext* context, const SideKey* key) {
    return krvfake::ActOn(context, "KrvMediaScan", key);
}

KrvBool KrvActivateJukebox(KrvCallContext* context, const JukeboxKey* key) {
    return krvfake::ActOn(context, "KrvActivateJukebox", key);
}

KrvBool KrvDeactivateJukebox(KrvCallContext* context, const JukeboxKey* key) {
    return krvfake::ActOn(context, "KrvDeactivateJukebox", key);
}

KrvBool KrvActivateMagazine(KrvCallContext* context, const MagazineKey* key) {
    return krvfake::ActOn(context, "KrvActivateMagazine", key);
}

KrvBool KrvDeactivateMagazine(KrvCallContext* context, const MagazineKey* key) {
    return krvfake::ActOn(context, "KrvDeactivateMagazine", key);
}

KrvBool KrvActivateDrive(KrvCallContext* context, const DriveKey* key) {
    return krvfake::ActOn(context, "KrvActivateDrive", key);
}

KrvBool KrvDeactivateDrive(KrvCallContext* context, const DriveKey* key) {
    return krvfake::ActOn(context, "KrvDeactivateDrive", key);
}

KrvBool KrvJukeboxSetName(KrvCallContext* context, const JukeboxKey* key, const char* newName) {
    return Fake().Perform(
        context, "KrvJukeboxSetName", [&] { return krvfake::Describe(*key) + TextArgument("name", newName); },
        [&](Complaints& complaints) { krvfake::CheckKey(key, complaints); }, [] { return Answer{}; });
}

KrvBool KrvServiceStart(KrvCallContext* context, const char* serverName) {
    return krvfake::ControlService(context, "KrvServiceStart",
                                   [&] { return TextArgument("server", serverName); });
}

KrvBool KrvServiceStop(KrvCallContext* context) {
    return krvfake::ControlService(context, "KrvServiceStop", krvfake::NoArguments);
}

KrvBool KrvServiceRestart(KrvCallContext* context) {
    return krvfake::ControlService(context, "KrvServiceRestart", krvfake::NoArguments);
}

}  // extern "C"
