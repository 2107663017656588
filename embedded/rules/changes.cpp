#include "embedded/rules/changes.h"

#include <vector>

#include "embedded/model/refusal.h"
#include "embedded/store/rows.h"

namespace embedded {

void RequireEnabledJukebox(Database& database, int32_t jukebox) {
    Rows rows(database, Sql::Jukebox, jukebox);
    if (!rows.Next()) throw Refuse(Code::NoJukebox, {std::to_string(jukebox)});
    if (!rows.Flag(1)) throw Refuse(Code::JukeboxDisabled, {rows.Text(0)});
}

SlotView RequireMedium(Database& database, const SlotPlace& place) {
    SlotView slot = FindSlot(database, place);
    if (slot.state == SlotState::NotPresent) {
        throw Refuse(Code::SlotNotUsable, {PlaceText(database, place), "not present"});
    }
    if (!slot.medium.has_value()) throw Refuse(Code::NoMedium, {PlaceText(database, place)});
    return slot;
}

void SetSlotState(Database& database, const SlotPlace& place, SlotState state) {
    Run(database, Sql::SetSlotState, place.jukebox, place.magazine, place.slot, state);
}

bool IsReadable(Database& database, const MediumView& medium) {
    Rows sides(database, Sql::SidesOfMedium, medium.id);
    while (sides.Next()) {
        if (static_cast<Content>(sides.Number(1)) != Content::Bad) return true;
    }
    return false;
}

void RefreshVolumeState(Database& database, int32_t volume) {
    Rows record(database, Sql::Volume, volume);
    if (!record.Next()) return;
    const bool isMirror = static_cast<VolumeType>(record.Number(1)) == VolumeType::Mirror;
    const bool isEnabled = record.Flag(3);
    Rows places(database, Sql::VolumePlaces, volume);
    places.Next();
    const int64_t sides = places.Integer(0);
    const int64_t reached = places.Integer(1);
    const bool isOnline = reached > 0 && (isMirror || reached == sides);
    VolumeState state = VolumeState::Offline;
    if (isOnline) state = isEnabled ? VolumeState::Active : VolumeState::Disabled;
    Run(database, Sql::SetVolumeState, volume, state);
    Run(database, Sql::ForgetOddState, volume);
}

void RefreshVolumesOf(Database& database, const MediumView& medium) {
    std::vector<int32_t> volumes;
    {
        Rows sides(database, Sql::SidesOfMedium, medium.id);
        while (sides.Next()) {
            if (!sides.IsNull(4)) volumes.push_back(sides.Number(4));
        }
    }
    for (const int32_t volume : volumes)
        RefreshVolumeState(database, volume);
}

}  // namespace embedded
