#include "embedded/rules/looking.h"

#include "embedded/model/media_types.h"
#include "embedded/model/refusal.h"
#include "embedded/rules/lookup.h"
#include "embedded/rules/records.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

uint32_t Next(Database& database, Sql sql, uint32_t previous) {
    Rows rows(database, sql, previous);
    return rows.Next() ? rows.Unsigned(0) : 0;
}

void RequireSlotNumber(int32_t slot, const char* function) {
    if (slot < 0) throw Refuse(Code::NotANumberedItem, {"the slot number", function});
}

}  // namespace

uint32_t NextJukebox(Database& database, uint32_t previous) {
    return Next(database, Sql::NextJukebox, previous);
}
uint32_t NextVolume(Database& database, uint32_t previous) {
    return Next(database, Sql::NextVolume, previous);
}

void LookAtJukebox(Database& database, const JukeboxKey& key, JukeboxRecord& record) {
    Rows rows(database, Sql::Jukebox, key.jukeboxId);
    if (!rows.Next()) throw Refuse(Code::NoJukebox, {std::to_string(key.jukeboxId)});
    record = DescribeJukebox(rows);
}

void LookAtMagazine(Database& database, const MagazineKey& key, MagazineRecord& record) {
    RequireMagazine(database, key.jukeboxId, key.magazine);
    Rows rows(database, Sql::Magazine, key.jukeboxId, key.magazine);
    rows.Next();
    record.present = rows.Flag(1) ? 1 : 0;
    // A magazine that is not there shows no slots, so that nothing counts through it.
    record.slotCount = rows.Flag(1) ? rows.Number(0) : 0;
}

void LookAtDrive(Database& database, const DriveKey& key, DriveRecord& record) {
    Rows rows(database, Sql::Drive, key.jukeboxId, key.drive);
    if (!rows.Next()) {
        throw Refuse(Code::NoDrive,
                     {JukeboxName(database, key.jukeboxId), std::to_string(int64_t{key.drive} + 1)});
    }
    record = DescribeDrive(rows);
}

void LookAtSlot(Database& database, const SlotKey& key, SlotRecord& record) {
    RequireSlotNumber(key.slot, "KrvGetSlot");
    const SlotView slot = FindSlot(database, ResolveSlot(database, key.jukeboxId, key.magazine, key.slot));
    record.state = static_cast<uint32_t>(slot.state);
    record.mediumCode = slot.medium.has_value() ? slot.medium->type : kNoMedium;
}

void LookAtSide(Database& database, const SideKey& key, SideRecord& record) {
    RequireSlotNumber(key.slot, "KrvGetSide");
    const SlotView slot = FindSlot(database, ResolveSlot(database, key.jukeboxId, key.magazine, key.slot));
    if (key.side != 0 && key.side != 1) {
        throw Refuse(Code::NoSuchSide, {PlaceText(database, slot.place), std::to_string(key.side)});
    }
    if (slot.state == SlotState::Empty) throw Refuse(Code::NoMedium, {PlaceText(database, slot.place)});
    if (slot.state == SlotState::NotPresent) {
        throw Refuse(Code::SlotNotUsable, {PlaceText(database, slot.place), "not present"});
    }
    const auto side = slot.medium.has_value() ? FindSide(database, *slot.medium, key.side) : std::nullopt;
    record = DescribeSide(slot.state, slot.medium, side);
    if (IsUnreadable(record)) throw Refuse(Code::SideUnreadable, {SideText(database, slot.place, key.side)});
}

void LookAtVolume(Database& database, uint32_t volume, VolumeRecord& record) {
    Rows rows(database, Sql::Volume, volume);
    if (volume == 0 || !rows.Next()) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    record = DescribeVolume(rows);
}

std::string AspectsOf(Database& database, uint32_t volume) {
    std::string list;
    Rows rows(database, Sql::Directories, volume);
    while (rows.Next())
        list.append(rows.Text(0)).push_back('\0');
    if (!list.empty()) {
        list.push_back('\0');
        return list;
    }
    Rows owner(database, Sql::Volume, volume);
    if (volume == 0 || !owner.Next()) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    return list;
}

std::vector<SideKey> LocationsOf(Database& database, uint32_t volume) {
    std::vector<SideKey> locations;
    Rows rows(database, Sql::Locations, volume);
    while (rows.Next()) {
        locations.push_back(
            {sizeof(SideKey), rows.Number(0), rows.Number(1), rows.Number(2), rows.Number(3)});
    }
    if (!locations.empty()) return locations;
    Rows owner(database, Sql::Volume, volume);
    if (volume == 0 || !owner.Next()) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    throw Refuse(Code::NoLocation, {std::to_string(volume)});
}

}  // namespace embedded
