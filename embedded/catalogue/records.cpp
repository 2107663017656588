#include "embedded/catalogue/records.h"

#include <algorithm>

#include "embedded/catalogue/item_texts.h"
#include "embedded/model/media_types.h"
#include "embedded/model/refusal.h"

namespace embedded {
namespace {

constexpr Sql kNextJukebox = R"sql(
    SELECT id FROM jukebox WHERE id > ?1 ORDER BY id LIMIT 1
)sql";

constexpr Sql kNextVolume = R"sql(
    SELECT id FROM volume WHERE id > ?1 ORDER BY id LIMIT 1
)sql";

constexpr Sql kJukeboxRecord = R"sql(
    SELECT name, enabled, double_sided, vendor, product, revision, scsi1, scsi2, scsi3,
        drive_count, magazine_count, slot_count
    FROM jukebox WHERE id = ?1
)sql";

constexpr Sql kDriveRecord = R"sql(
    SELECT enabled, vendor, product, revision, scsi1, scsi2, scsi3, value1, value2
    FROM drive WHERE jukebox = ?1 AND number = ?2
)sql";

constexpr Sql kVolumeRecord = R"sql(
    SELECT type, state, file_system, label, total, free, value1, value2 FROM volume WHERE id = ?1
)sql";

constexpr Sql kDirectories = R"sql(
    SELECT name FROM directory WHERE volume = ?1 ORDER BY position
)sql";

// The states of the side record beyond those of Content.
constexpr uint32_t kSideUnknown = 0;
constexpr uint32_t kSideNotPresent = 1;
constexpr uint32_t kSideScanFailed = 2;

// The next column into a text field of a record that is all zero; it is cut to leave room for the NUL.
template <size_t Size>
void ReadText(Statement& row, char (&field)[Size]) {
    row.Read<std::string_view>().copy(field, Size - 1);
}

void ReadIdentity(Statement& row, DeviceIdentity& identity) {
    ReadText(row, identity.vendor);
    ReadText(row, identity.product);
    ReadText(row, identity.revision);
    for (int32_t& component : identity.scsiAddress)
        row >> component;
}

// The next column as a flag of a record.
uint32_t ReadFlag(Statement& row) {
    return row.Read<bool>() ? 1 : 0;
}

Slot FindSlotOfKey(Database& database, int32_t jukebox, int32_t magazine, int32_t slot,
                   const char* function) {
    if (slot < 0) throw Refuse(Code::NotANumberedItem, {"the slot number", function});
    return FindSlot(database, ResolveSlot(database, jukebox, magazine, slot));
}

}  // namespace

uint32_t NextJukebox(Database& database, uint32_t previous) {
    return FindValue<uint32_t>(database, kNextJukebox, previous).value_or(0);
}

uint32_t NextVolume(Database& database, uint32_t previous) {
    return FindValue<uint32_t>(database, kNextVolume, previous).value_or(0);
}

JukeboxRecord DescribeJukebox(Database& database, const JukeboxKey& key) {
    Statement row(database, kJukeboxRecord, key.jukeboxId);
    if (!row.Next()) throw Refuse(Code::NoJukebox, {std::to_string(key.jukeboxId)});
    JukeboxRecord record{};
    record.size = sizeof(record);
    ReadText(row, record.name);
    record.enabled = ReadFlag(row);
    record.doubleSided = ReadFlag(row);
    ReadIdentity(row, record.identity);
    row >> record.driveCount >> record.magazineCount >> record.slotCount;
    return record;
}

// A magazine that is not present shows no slots, so that nothing counts through it.
MagazineRecord DescribeMagazine(Database& database, const MagazineKey& key) {
    const Magazine magazine = FindMagazine(database, key.jukeboxId, key.magazine);
    if (!magazine.isPresent) return {sizeof(MagazineRecord), 0, 0};
    return {sizeof(MagazineRecord), magazine.slotCount, 1};
}

DriveRecord DescribeDrive(Database& database, const DriveKey& key) {
    Statement row(database, kDriveRecord, key.jukeboxId, key.drive);
    if (!row.Next()) {
        throw Refuse(Code::NoDrive, {FindJukebox(database, key.jukeboxId).name, OneBased(key.drive)});
    }
    DriveRecord record{};
    record.size = sizeof(record);
    record.enabled = ReadFlag(row);
    ReadIdentity(row, record.identity);
    row >> record.libraryValue1 >> record.libraryValue2;
    return record;
}

SlotRecord DescribeSlot(Database& database, const SlotKey& key) {
    const Slot slot = FindSlotOfKey(database, key.jukeboxId, key.magazine, key.slot, "KrvGetSlot");
    return {sizeof(SlotRecord), static_cast<uint32_t>(slot.state),
            slot.medium.has_value() ? slot.medium->type : kNoMedium};
}

void DescribeSide(Database& database, const SideKey& key, SideRecord& record) {
    const Slot slot = FindSlotOfKey(database, key.jukeboxId, key.magazine, key.slot, "KrvGetSide");
    if (key.side != 0 && key.side != 1) {
        throw Refuse(Code::NoSuchSide, {PlaceText(database, slot.place), std::to_string(key.side)});
    }
    if (slot.state == SlotState::Empty) throw Refuse(Code::NoMedium, {PlaceText(database, slot.place)});
    RequirePresentSlot(database, slot);
    const auto side = slot.medium.has_value() ? FindSide(database, *slot.medium, key.side) : std::nullopt;
    record = SideRecordOf(slot.state, slot.medium, side);
    if (IsUnreadable(record)) throw Refuse(Code::SideUnreadable, {SideText(database, slot.place, key.side)});
}

VolumeRecord DescribeVolume(Database& database, uint32_t volume) {
    Statement row(database, kVolumeRecord, volume);
    if (volume == 0 || !row.Next()) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    return ReadVolumeRecord(row);
}

VolumeRecord ReadVolumeRecord(Statement& row) {
    VolumeRecord record{};
    record.size = sizeof(record);
    row >> record.type >> record.state;
    ReadText(row, record.fileSystem);
    ReadText(row, record.label);
    row >> record.totalCapacity >> record.freeCapacity >> record.libraryValue1 >> record.libraryValue2;
    return record;
}

SideRecord SideRecordOf(SlotState slot, const std::optional<Medium>& medium,
                        const std::optional<Side>& side) {
    SideRecord record{};
    record.size = sizeof(record);
    record.state = slot == SlotState::ScanFailed ? kSideScanFailed : kSideUnknown;
    record.mediumCode = medium.has_value() ? medium->type : kNoMedium;
    if (!medium.has_value()) return record;
    if (!side.has_value()) {
        record.state = kSideNotPresent;
        return record;
    }
    record.volumeId = std::max(side->volume, 0);
    if (slot != SlotState::Full) return record;
    record.state = static_cast<uint32_t>(side->content);
    record.finalization = static_cast<uint32_t>(side->finalization);
    return record;
}

bool IsUnreadable(const SideRecord& record) {
    return record.state == static_cast<uint32_t>(Content::Bad);
}

std::string DescribeAspects(Database& database, uint32_t volume) {
    std::string list;
    Statement row(database, kDirectories, volume);
    while (row.Next())
        list.append(row.Read<std::string_view>()).push_back('\0');
    if (list.empty()) {
        RequireVolume(database, volume);
    } else {
        list.push_back('\0');
    }
    return list;
}

std::vector<SideKey> DescribeLocations(Database& database, uint32_t volume) {
    std::vector<SideKey> locations = FindLocations(database, volume);
    if (!locations.empty()) return locations;
    RequireVolume(database, volume);
    throw Refuse(Code::NoLocation, {std::to_string(volume)});
}

}  // namespace embedded
