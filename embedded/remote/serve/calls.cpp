#include "embedded/remote/serve/calls.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "embedded/model/refusal.h"
#include "embedded/remote/protocol/fields.h"
#include "embedded/remote/serve/ahead_reader.h"

namespace embedded::remote {
namespace {

// Reads the arguments of a call, makes it and writes its result.
using Work = void (*)(LocalSession& session, FieldReader& arguments, json& result);

template <auto Method>
void NextId(LocalSession& session, FieldReader& arguments, json& result) {
    uint32_t next = 0;
    (session.*Method)(arguments.Number<uint32_t>(), &next);
    result.push_back(next);
}

template <typename Key, typename Record, auto Method>
void Describe(LocalSession& session, FieldReader& arguments, json& result) {
    const auto key = Take<Key>(arguments);
    Record record;
    krvcmd::Preset(record);
    try {
        (session.*Method)(&key, &record);
    } catch (const Refusal&) {
        result = ListOf(record);  // of a side that cannot be read
        throw;
    }
    result = ListOf(record);
}

void VolumeDetail(LocalSession& session, FieldReader& arguments, json& result) {
    VolumeRecord record;
    krvcmd::Preset(record);
    session.VolumeDetail(arguments.Number<uint32_t>(), &record);
    result = ListOf(record);
}

void VolumeAspects(LocalSession& session, FieldReader& arguments, json& result) {
    const auto volume = arguments.Number<uint32_t>();
    std::string list;
    uint32_t size = 0;
    session.VolumeAspects(volume, nullptr, 0, &size);
    while (size > list.size()) {
        list.resize(size);
        session.VolumeAspects(volume, list.data(), static_cast<uint32_t>(list.size()), &size);
    }
    list.resize(size);
    result.push_back(BytesOf(list));
}

void VolumeLocations(LocalSession& session, FieldReader& arguments, json& result) {
    constexpr SideKey kUnset{sizeof(SideKey), -1, -1, -1, -1};
    const auto volume = arguments.Number<uint32_t>();
    std::vector<SideKey> places(1, kUnset);
    uint32_t count = 0;
    session.VolumeLocations(volume, places.data(), 1, &count);
    if (count > 1) {
        places.assign(count, kUnset);
        session.VolumeLocations(volume, places.data(), 1, &count);
    }
    places.resize(std::min<size_t>(count, places.size()));
    json::array_t list;
    for (const SideKey& place : places)
        Append(list, place);
    result = std::move(list);
}

template <typename Key, auto Method>
void Change(LocalSession& session, FieldReader& arguments, json& /*result*/) {
    const auto key = Take<Key>(arguments);
    (session.*Method)(&key);
}

void VolumeFormat(LocalSession& session, FieldReader& arguments, json& /*result*/) {
    const auto key = Take<SideKey>(arguments);
    const auto options = Take<FormatOptions>(arguments);
    session.VolumeFormat(&key, &options);
}

void VolumeSetAspects(LocalSession& session, FieldReader& arguments, json& /*result*/) {
    const auto volume = arguments.Number<uint32_t>();
    session.VolumeSetAspects(volume, arguments.Text().c_str(), 1);
}

void VolumeActivate(LocalSession& session, FieldReader& arguments, json& /*result*/) {
    session.VolumeActivate(arguments.Number<uint32_t>(), nullptr);
}

void VolumeDeactivate(LocalSession& session, FieldReader& arguments, json& /*result*/) {
    session.VolumeDeactivate(arguments.Number<uint32_t>());
}

void JukeboxSetName(LocalSession& session, FieldReader& arguments, json& /*result*/) {
    const auto key = Take<JukeboxKey>(arguments);
    session.JukeboxSetName(&key, arguments.Text().c_str());
}

template <auto Method>
void WithoutArguments(LocalSession& session, FieldReader& /*arguments*/, json& /*result*/) {
    (session.*Method)();
}

enum class Effect { Looks, Changes };

struct Function {
    std::string_view name;
    Effect effect;
    Work work;
};

using S = LocalSession;

constexpr Function kFunctions[] = {
    {"KrvGetNextJukebox", Effect::Looks, NextId<&S::GetNextJukebox>},
    {"KrvGetJukebox", Effect::Looks, Describe<JukeboxKey, JukeboxRecord, &S::GetJukebox>},
    {"KrvGetMagazine", Effect::Looks, Describe<MagazineKey, MagazineRecord, &S::GetMagazine>},
    {"KrvGetDrive", Effect::Looks, Describe<DriveKey, DriveRecord, &S::GetDrive>},
    {"KrvGetSlot", Effect::Looks, Describe<SlotKey, SlotRecord, &S::GetSlot>},
    {"KrvGetSide", Effect::Looks, Describe<SideKey, SideRecord, &S::GetSide>},
    {"KrvGetNextVolume", Effect::Looks, NextId<&S::GetNextVolume>},
    {"KrvVolumeDetail", Effect::Looks, VolumeDetail},
    {"KrvVolumeAspects", Effect::Looks, VolumeAspects},
    {"KrvVolumeLocations", Effect::Looks, VolumeLocations},
    {"KrvSessionClose", Effect::Looks, WithoutArguments<&S::SessionClose>},
    {"KrvVolumeSetAspects", Effect::Changes, VolumeSetAspects},
    {"KrvVolumeActivate", Effect::Changes, VolumeActivate},
    {"KrvVolumeDeactivate", Effect::Changes, VolumeDeactivate},
    {"KrvVolumeErase", Effect::Changes, Change<SideKey, &S::VolumeErase>},
    {"KrvVolumeFinalize", Effect::Changes, Change<SideKey, &S::VolumeFinalize>},
    {"KrvVolumeFormat", Effect::Changes, VolumeFormat},
    {"KrvMediaImport", Effect::Changes, Change<SlotKey, &S::MediaImport>},
    {"KrvMediaExport", Effect::Changes, Change<SlotKey, &S::MediaExport>},
    {"KrvMediaScan", Effect::Changes, Change<SideKey, &S::MediaScan>},
    {"KrvActivateJukebox", Effect::Changes, Change<JukeboxKey, &S::ActivateJukebox>},
    {"KrvDeactivateJukebox", Effect::Changes, Change<JukeboxKey, &S::DeactivateJukebox>},
    {"KrvActivateMagazine", Effect::Changes, Change<MagazineKey, &S::ActivateMagazine>},
    {"KrvDeactivateMagazine", Effect::Changes, Change<MagazineKey, &S::DeactivateMagazine>},
    {"KrvActivateDrive", Effect::Changes, Change<DriveKey, &S::ActivateDrive>},
    {"KrvDeactivateDrive", Effect::Changes, Change<DriveKey, &S::DeactivateDrive>},
    {"KrvJukeboxSetName", Effect::Changes, JukeboxSetName},
    {"KrvServiceStop", Effect::Changes, WithoutArguments<&S::ServiceStop>},
    {"KrvServiceRestart", Effect::Changes, WithoutArguments<&S::ServiceRestart>},
};

const Function* Find(std::string_view name) {
    const auto* const found = std::ranges::find(kFunctions, name, &Function::name);
    return found == std::end(kFunctions) ? nullptr : found;
}

using Reader = std::function<json(const View&)>;

// Null when that fails, or while every call counts.
json ReadAhead(LocalSession& session, const Reader& read) {
    json ahead;
    try {
        (void)session.GetSession().ReadBetweenCalls([&](const View& view) { ahead = read(view); });
    } catch (const Refusal&) {
        return nullptr;  // the next call tells why
    }
    return ahead;
}

// What may be asked after a change; null when the caller does not say where that begins.
json AheadAfterChange(LocalSession& session, const Request& request) {
    const size_t count = std::min<size_t>(request.ahead, kMostAhead);
    if (request.from.empty()) return nullptr;
    const json place(request.from);
    FieldReader fields(place);
    Reader read;
    if (request.from.size() == 1) {
        const auto first = fields.Number<uint32_t>();
        read = [first, count](const View& view) { return ToMessage(ReadAheadOfVolumes(view, first, count)); };
    } else {
        const auto slot = Take<SlotKey>(fields);
        read = [slot, count](const View& view) { return ToMessage(ReadAheadOfSlot(view, slot, count)); };
    }
    if (!fields.IsAtEnd()) throw ProtocolFailure("a place has too many fields");
    return ReadAhead(session, read);
}

// What may be asked after a look; null when nothing is read ahead after this one.
json AheadAfterLook(LocalSession& session, VolumeRows& rows, const Request& request, const json& result) {
    const json arguments(request.arguments);
    FieldReader fields(arguments);
    const size_t count = std::min<size_t>(request.ahead, kMostAhead);
    Reader read;
    if (request.function == "KrvGetJukebox") {
        read = [&](const View& view) {
            return ToMessage(ReadAheadOfJukebox(view, fields.Number<int32_t>()));
        };
    } else if (request.function == "KrvGetSlot" || request.function == "KrvGetSide") {
        const auto slot = Take<SlotKey>(fields);
        if (slot.magazine < 0) return nullptr;
        read = [slot, count](const View& view) { return ToMessage(ReadAheadOfSlot(view, slot, count)); };
    } else if (request.function == "KrvGetNextVolume") {
        const auto first = result.at(0).get<uint32_t>();
        if (first == 0) return nullptr;
        read = [&rows, first, count](const View& view) { return rows.Take(view, first, count); };
    } else if (request.function.starts_with("KrvVolume")) {
        read = [&](const View& view) {
            return ToMessage(ReadAheadOfVolume(view, fields.Number<uint32_t>()));
        };
    } else {
        return nullptr;
    }
    return ReadAhead(session, read);
}

// The function's own refusals are answers.
void Make(const Function& function, LocalSession& session, FieldReader& fields, Answer& answer) {
    try {
        function.work(session, fields, answer.result);
    } catch (const Refusal& refusal) {
        answer.failure = {refusal.GetCode(), refusal.GetText()};
        return;
    }
    if (!fields.IsAtEnd()) throw ProtocolFailure("a call has too many arguments");
}

}  // namespace

bool IsChange(std::string_view function) {
    const Function* const known = Find(function);
    return known == nullptr || known->effect == Effect::Changes;
}

Answer MakeCall(LocalSession& session, VolumeRows& rows, const Request& request) {
    const Function* const function = Find(request.function);
    if (function == nullptr) throw ProtocolFailure("a call of \"" + request.function + "\" is not known");
    Answer answer;
    answer.number = request.number;
    const json arguments(request.arguments);
    FieldReader fields(arguments);
    Make(*function, session, fields, answer);
    if (request.ahead == 0) return answer;
    if (function->effect == Effect::Changes) {
        answer.ahead = AheadAfterChange(session, request);
    } else if (!answer.failure.has_value()) {
        answer.ahead = AheadAfterLook(session, rows, request, answer.result);
    }
    return answer;
}

void PrepareNextRow(LocalSession& session, VolumeRows& rows) {
    if (!rows.GoesOn()) return;
    (void)ReadAhead(session, [&rows](const View& view) {
        rows.PrepareNext(view);
        return json();
    });
}

}  // namespace embedded::remote
