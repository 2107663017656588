#include "simulator/world/looking.h"

#include <algorithm>
#include <cstring>

#include "simulator/store/rows.h"
#include "simulator/world/lookup.h"
#include "simulator/world/media_types.h"
#include "simulator/world/refusal.h"

namespace krvsim {
namespace {

// Fills a text field: cut to leave room for the NUL, the rest of the field zero.
template <size_t Size>
void FillText(char (&field)[Size], std::string_view text) {
    const size_t length = std::min(text.size(), Size - 1);
    std::memcpy(field, text.data(), length);
    std::memset(field + length, 0, Size - length);
}

// Vendor, product, revision and the SCSI address stand in this order from `column` on.
void FillIdentity(DeviceIdentity& identity, const Rows& rows, int column) {
    FillText(identity.vendor, rows.Text(column));
    FillText(identity.product, rows.Text(column + 1));
    FillText(identity.revision, rows.Text(column + 2));
    for (int component = 0; component < 3; ++component) {
        identity.scsiAddress[component] = rows.Number(column + 3 + component);
    }
    identity.padding = 0;
}

uint32_t Next(Database& database, Sql sql, uint32_t previous) {
    Rows rows(database, sql, previous);
    return rows.Next() ? rows.Unsigned(0) : 0;
}

void RequireSlotNumber(int32_t slot, const char* function) {
    if (slot < 0) throw Refuse(Code::NotANumberedItem, {"the slot number", function});
}

// What is reported of a side before its content counts: the slot's own state stands for it.
SideRecord Unread(uint32_t state, const std::optional<MediumView>& medium) {
    SideRecord record{};
    record.size = sizeof(SideRecord);
    record.state = state;
    record.mediumCode = medium.has_value() ? medium->type : kNoMedium;
    return record;
}

constexpr uint32_t kSideUnknown = 0;
constexpr uint32_t kSideNotPresent = 1;
constexpr uint32_t kSideScanFailed = 2;

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
    FillText(record.name, rows.Text(0));
    record.enabled = rows.Flag(1) ? 1 : 0;
    record.doubleSided = rows.Flag(2) ? 1 : 0;
    FillIdentity(record.identity, rows, 3);
    record.driveCount = rows.Number(9);
    record.magazineCount = rows.Number(10);
    record.slotCount = rows.Number(11);
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
    record.enabled = rows.Flag(0) ? 1 : 0;
    FillIdentity(record.identity, rows, 1);
    record.padding = 0;
    record.libraryValue1 = static_cast<uint64_t>(rows.Integer(7));
    record.libraryValue2 = static_cast<uint64_t>(rows.Integer(8));
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
    const std::string sideNumber = std::to_string(key.side);
    if (key.side != 0 && key.side != 1) {
        throw Refuse(Code::NoSuchSide, {PlaceText(database, slot.place), sideNumber});
    }
    if (slot.state == SlotState::Empty) throw Refuse(Code::NoMedium, {PlaceText(database, slot.place)});
    if (slot.state == SlotState::NotPresent) {
        throw Refuse(Code::SlotNotUsable, {PlaceText(database, slot.place), "not present"});
    }
    const auto side = slot.medium.has_value() ? FindSide(database, *slot.medium, key.side) : std::nullopt;
    const bool isRead = slot.state == SlotState::Full;
    if (slot.medium.has_value() && !side.has_value()) {
        record = Unread(kSideNotPresent, slot.medium);
        return;
    }
    record = Unread(slot.state == SlotState::ScanFailed ? kSideScanFailed : kSideUnknown, slot.medium);
    if (!side.has_value()) return;
    // Where the medium was not read, what the service knew of it before still holds.
    record.volumeId = std::max(side->volume, 0);
    if (!isRead) return;
    record.state = static_cast<uint32_t>(side->content);
    record.finalization = static_cast<uint32_t>(side->finalization);
    if (side->content == Content::Bad) {
        throw Refuse(Code::SideUnreadable, {SideText(database, slot.place, key.side)});
    }
}

void LookAtVolume(Database& database, uint32_t volume, VolumeRecord& record) {
    Rows rows(database, Sql::Volume, volume);
    if (volume == 0 || !rows.Next()) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    record.type = rows.Unsigned(0);
    record.state = rows.Unsigned(1);
    FillText(record.fileSystem, rows.Text(3));
    FillText(record.label, rows.Text(4));
    record.padding[0] = 0;
    record.padding[1] = 0;
    record.totalCapacity = static_cast<uint64_t>(rows.Integer(5));
    record.freeCapacity = static_cast<uint64_t>(rows.Integer(6));
    record.libraryValue1 = rows.Number(7);
    record.libraryValue2 = rows.Unsigned(8);
    std::memset(record.reserved, 0, sizeof(record.reserved));
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

uint32_t LocationsOf(Database& database, uint32_t volume, std::span<SideKey> room) {
    uint32_t count = 0;
    Rows rows(database, Sql::Locations, volume);
    while (rows.Next()) {
        if (count < room.size()) {
            room[count] = {sizeof(SideKey), rows.Number(0), rows.Number(1), rows.Number(2), rows.Number(3)};
        }
        ++count;
    }
    if (count > 0) return count;
    Rows owner(database, Sql::Volume, volume);
    if (volume == 0 || !owner.Next()) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    throw Refuse(Code::NoLocation, {std::to_string(volume)});
}

}  // namespace krvsim
