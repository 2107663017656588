#include "embedded/rules/moving.h"

#include <vector>

#include "embedded/rules/changes.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

// A jukebox or a magazine that has no slot left to import to, or to export from, is already as
// the caller wants it.
Refusal AlreadySo(Database& database, const SlotKey& key, const char* state) {
    const std::string item = key.magazine < 0 ? "jukebox \"" + JukeboxName(database, key.jukeboxId) + "\""
                                              : MagazineText(database, key.jukeboxId, key.magazine);
    return Refuse(Code::AlreadySo, {item, state});
}

// The slot that the key names, or else the first one that the call can use.
SlotPlace ChooseSlot(Database& database, const SlotKey& key, Sql ofMagazine, Sql ofJukebox,
                     const char* state) {
    if (key.slot >= 0) return ResolveSlot(database, key.jukeboxId, key.magazine, key.slot);
    if (key.magazine >= 0) {
        RequirePresentMagazine(database, key.jukeboxId, key.magazine);
        Rows rows(database, ofMagazine, key.jukeboxId, key.magazine);
        if (rows.Next()) return {key.jukeboxId, rows.Number(0), rows.Number(1)};
    } else {
        // From magazine to magazine: what is in a missing one is stepped over, however many slots it has.
        for (int32_t magazine = 0;;) {
            Rows rows(database, ofJukebox, key.jukeboxId, magazine);
            if (!rows.Next()) break;
            if (rows.Flag(2)) return {key.jukeboxId, rows.Number(0), rows.Number(1)};
            magazine = rows.Number(0) + 1;
        }
    }
    throw AlreadySo(database, key, state);
}

// A volume that the service sees for the first time gets its number.
void NumberNewVolumes(Database& database, int64_t medium) {
    std::vector<int32_t> unseen;
    {
        Rows sides(database, Sql::SidesOfMedium, medium);
        while (sides.Next()) {
            if (sides.Integer(4) < 0) unseen.push_back(sides.Number(4));
        }
    }
    for (const int32_t volume : unseen) {
        int64_t number = 0;
        {
            Rows taken(database, Sql::TakeVolumeId);
            taken.Next();
            number = taken.Integer(0);
        }
        Run(database, Sql::NumberSides, volume, number);
        Run(database, Sql::NumberVolume, volume, number);
        Run(database, Sql::NumberDirectories, volume, number);
        Run(database, Sql::ForgetOddState, volume);
    }
}

void RequireEmptySlot(Database& database, const SlotPlace& place) {
    const SlotView slot = FindSlot(database, place);
    if (slot.state == SlotState::NotPresent) {
        throw Refuse(Code::SlotNotUsable, {PlaceText(database, place), "not present"});
    }
    if (slot.state != SlotState::Empty) {
        throw Refuse(Code::SlotNotUsable, {PlaceText(database, place), "not empty"});
    }
}

int64_t NextWaiting(Database& database, int32_t jukebox) {
    Rows rows(database, Sql::NextWaiting, jukebox);
    if (rows.Next()) return rows.Integer(0);
    throw Refuse(Code::NoMedium,
                 {"the import station of jukebox \"" + JukeboxName(database, jukebox) + "\""});
}

int64_t EndOfStation(Database& database, Place station, int32_t jukebox) {
    Rows rows(database, Sql::LastInStation, station, jukebox);
    return rows.Next() ? rows.Integer(0) + 1 : 0;
}

}  // namespace

std::string ImportMedium(Database& database, const SlotKey& key) {
    RequireEnabledJukebox(database, key.jukeboxId);
    // A slot that does not exist is refused as such, whether or not a medium waits.
    if (key.slot >= 0) FindSlot(database, ResolveSlot(database, key.jukeboxId, key.magazine, key.slot));
    const int64_t medium = NextWaiting(database, key.jukeboxId);
    const SlotPlace place =
        ChooseSlot(database, key, Sql::FirstEmptySlotOfMagazine, Sql::FirstEmptySlot, "full");
    RequireEmptySlot(database, place);
    Run(database, Sql::MoveMedium, medium, Place::Slot, place.jukebox, place.magazine, place.slot);
    NumberNewVolumes(database, medium);
    const MediumView imported = *FindSlot(database, place).medium;
    SetSlotState(database, place, IsReadable(database, imported) ? SlotState::Full : SlotState::ScanFailed);
    RefreshVolumesOf(database, imported);
    return "imported: " + LocationText(database, place) + " (" + MediumText(database, imported) + ")";
}

std::string ExportMedium(Database& database, const SlotKey& key) {
    RequireEnabledJukebox(database, key.jukeboxId);
    const SlotPlace place =
        ChooseSlot(database, key, Sql::FirstFullSlotOfMagazine, Sql::FirstFullSlot, "empty");
    const MediumView medium = *RequireMedium(database, place).medium;
    const int64_t position = EndOfStation(database, Place::ExportStation, place.jukebox);
    Run(database, Sql::MoveMedium, medium.id, Place::ExportStation, place.jukebox, 0, position);
    SetSlotState(database, place, SlotState::Empty);
    RefreshVolumesOf(database, medium);
    return "exported: " + LocationText(database, place) + " (" + MediumText(database, medium) + ")";
}

ScanResult ScanMedium(Database& database, const SideKey& key) {
    if (key.side < 0 || key.side > 2) {
        throw Refuse(Code::NoSuchSide, {"the medium to scan", std::to_string(key.side)});
    }
    if (key.slot < 0) throw Refuse(Code::NotANumberedItem, {"the slot number", "KrvMediaScan"});
    RequireEnabledJukebox(database, key.jukeboxId);
    const SlotPlace place = ResolveSlot(database, key.jukeboxId, key.magazine, key.slot);
    const SlotView slot = FindSlot(database, place);
    if (slot.state == SlotState::NotPresent) {
        throw Refuse(Code::SlotNotUsable, {PlaceText(database, place), "not present"});
    }
    ScanResult result;
    SlotState found = SlotState::Full;
    if (!slot.medium.has_value()) {
        found = SlotState::Empty;
        result.refusal = Refuse(Code::NoMedium, {PlaceText(database, place)});
    } else if (!IsReadable(database, *slot.medium)) {
        found = SlotState::ScanFailed;
        result.refusal = Refuse(Code::SideUnreadable, {"the medium in " + PlaceText(database, place)});
    }
    if (found != slot.state) {
        SetSlotState(database, place, found);
        result.change = "scanned: " + LocationText(database, place);
        if (slot.medium.has_value()) result.change += " (" + MediumText(database, *slot.medium) + ")";
    }
    return result;
}

}  // namespace embedded
