#include "embedded/catalogue/attached_media.h"

#include <algorithm>

#include "embedded/catalogue/change_made.h"
#include "embedded/catalogue/item_texts.h"
#include "embedded/catalogue/service_state.h"
#include "embedded/catalogue/volume_changes.h"
#include "embedded/model/media_types.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kMailSlotCount = R"sql(SELECT count(*) FROM element WHERE jukebox = ?1 AND kind = 3)sql";
constexpr Sql kFreeMailSlot = R"sql(
    SELECT e.address FROM element e
    LEFT JOIN medium d ON d.place IN (2, 3) AND d.jukebox = e.jukebox AND d.magazine = 0 AND d.slot = e.number
    WHERE e.jukebox = ?1 AND e.kind = 3 AND e.magazine = 0 AND e.reported = 1 AND d.id IS NULL
    ORDER BY e.number LIMIT 1
)sql";
constexpr Sql kMailSlotOf = R"sql(
    SELECT e.address FROM medium d
    CROSS JOIN element e ON e.jukebox = d.jukebox AND e.kind = 3 AND e.magazine = 0 AND e.number = d.slot
    WHERE d.id = ?1 AND d.place IN (2, 3)
)sql";
constexpr Sql kElementOfSlot = R"sql(
    SELECT address FROM element WHERE jukebox = ?1 AND kind = 2 AND magazine = ?2 AND number = ?3
)sql";

constexpr Sql kUsableDrives = R"sql(
    SELECT d.number, e.address
    FROM drive d
    CROSS JOIN element e ON e.jukebox = d.jukebox AND e.kind = 4 AND e.magazine = 0 AND e.number = d.number
    CROSS JOIN drive_device v ON v.jukebox = d.jukebox AND v.number = d.number
    WHERE d.jukebox = ?1 AND d.enabled = 1 AND e.reported = 1 AND v.address <> '' ORDER BY d.number
)sql";
constexpr Sql kDoubleSided = R"sql(SELECT double_sided FROM jukebox WHERE id = ?1)sql";

constexpr Sql kSetMedium = R"sql(UPDATE medium SET type = ?2, sides = max(sides, ?3) WHERE id = ?1)sql";
constexpr Sql kRecordSide = R"sql(
    INSERT INTO side (medium, side, content, finalization, sequential, volume, part)
    VALUES (?1, ?2, ?3, ?4, ?5, nullif(?6, 0), 0)
    ON CONFLICT (medium, side) DO UPDATE SET content = excluded.content,
        finalization = excluded.finalization, sequential = excluded.sequential, volume = excluded.volume
)sql";
constexpr Sql kSetBadSide = R"sql(
    INSERT INTO side (medium, side, content, finalization, sequential, volume, part)
    VALUES (?1, ?2, 3, 0, 0, NULL, 0)
    ON CONFLICT (medium, side) DO UPDATE SET content = 3
)sql";
constexpr Sql kIdentity = R"sql(SELECT uuid FROM side_identity WHERE medium = ?1 AND side = ?2)sql";
constexpr Sql kSetIdentity = R"sql(
    INSERT OR REPLACE INTO side_identity (medium, side, uuid) VALUES (?1, ?2, ?3)
)sql";
constexpr Sql kForgetIdentity = R"sql(DELETE FROM side_identity WHERE medium = ?1 AND side = ?2)sql";
constexpr Sql kSetKnownState = R"sql(UPDATE known_medium SET state = ?2 WHERE medium = ?1)sql";

// A medium without a barcode that left the jukebox, by what was on its side.
constexpr Sql kOnShelfByContent = R"sql(
    SELECT i.medium, s.volume FROM side_identity i
    CROSS JOIN known_medium k ON k.medium = i.medium
    CROSS JOIN medium d ON d.id = i.medium
    CROSS JOIN side s ON s.medium = i.medium AND s.side = i.side
    CROSS JOIN volume v ON v.id = s.volume
    WHERE i.uuid = ?1 AND v.label = ?2 AND k.tag = '' AND d.place = 4 AND i.medium <> ?3
    ORDER BY i.medium LIMIT 1
)sql";
constexpr Sql kTakeVolumeOff = R"sql(UPDATE side SET volume = NULL, content = 4 WHERE volume = ?1)sql";
constexpr Sql kVolumesOnMedium = R"sql(
    SELECT count(*) FROM side WHERE medium = ?1 AND volume IS NOT NULL
)sql";

uint16_t ElementOf(Database& database, const SlotPlace& place) {
    return FindValue<uint16_t>(database, kElementOfSlot, place.jukebox, place.magazine, place.slot)
        .value_or(0);
}

bool IsDoubleSided(Database& database, int32_t jukebox) {
    return FindValue<bool>(database, kDoubleSided, jukebox).value_or(false);
}

void ForgetMedium(Database& database, int64_t medium) {
    Run(database, R"sql(DELETE FROM side WHERE medium = ?1)sql", medium);
    Run(database, R"sql(DELETE FROM side_identity WHERE medium = ?1)sql", medium);
    Run(database, R"sql(DELETE FROM known_medium WHERE medium = ?1)sql", medium);
    Run(database, R"sql(DELETE FROM medium WHERE id = ?1)sql", medium);
}

// The volume of a medium that left the jukebox without a barcode and has come back; 0 = none has.
int32_t TakeReturnedVolume(Database& database, int64_t medium, const SideReading& reading) {
    if (reading.uuid.empty()) return 0;
    int64_t left = 0;
    int32_t volume = 0;
    {
        Statement row(database, kOnShelfByContent, reading.uuid, reading.label, medium);
        if (!row.Next()) return 0;
        row >> left >> volume;
    }
    Run(database, kTakeVolumeOff, volume);
    if (FindValue<int64_t>(database, kVolumesOnMedium, left).value_or(0) == 0) ForgetMedium(database, left);
    return volume;
}

// The volume on a side that holds a file system: the one that was there, when it is still the same.
int32_t VolumeOf(Database& database, const Medium& medium, const ReadSide& read) {
    const SideReading& reading = read.reading;
    const auto before = FindSide(database, medium, read.side);
    const int32_t old = before.has_value() ? before->volume : 0;
    const auto identity = FindValue<std::string>(database, kIdentity, medium.id, read.side).value_or("");
    if (old != 0 && identity == reading.uuid) return old;
    if (old != 0) RemoveVolume(database, old);
    const int32_t returned = TakeReturnedVolume(database, medium.id, reading);
    if (returned != 0) return returned;
    return AddVolume(database, reading);
}

void RecordSide(Database& database, const Medium& medium, const ReadSide& read) {
    const SideReading& reading = read.reading;
    if (reading.content == Content::Bad) {
        Run(database, kSetBadSide, medium.id, read.side);
        return;
    }
    int32_t volume = 0;
    if (reading.content == Content::FileSystem) {
        volume = VolumeOf(database, medium, read);
        SetVolume(database, volume, reading);
        Run(database, kSetIdentity, medium.id, read.side, reading.uuid);
    } else {
        const auto before = FindSide(database, medium, read.side);
        if (before.has_value() && before->volume != 0) RemoveVolume(database, before->volume);
        Run(database, kForgetIdentity, medium.id, read.side);
    }
    Run(database, kRecordSide, medium.id, read.side, reading.content, reading.finalization,
        reading.isSequential, volume);
}

// Some drives report a written disc as one that is read-only: the medium keeps its type. A volume that was
// formatted keeps its ID.
void RecordReadAgain(Database& database, const Slot& slot, std::vector<ReadSide> sides) {
    const Medium& medium = *slot.medium;
    for (ReadSide& side : sides) {
        if (medium.type != kUnknownMedium) side.reading.mediumType = medium.type;
        const bool hasFileSystem = side.reading.content == Content::FileSystem;
        if (hasFileSystem) Run(database, kSetIdentity, medium.id, side.side, side.reading.uuid);
    }
    (void)RecordScan(database, slot, kBothSides, sides);
}

}  // namespace

void RequireMailSlots(Database& database, int32_t jukebox) {
    if (!ReadServiceState(database).isAttached) return;
    if (FindValue<int64_t>(database, kMailSlotCount, jukebox).value_or(0) > 0) return;
    throw Refuse(Code::NoMailSlots, {FindJukebox(database, jukebox).name});
}

ElementPair ElementsOfImport(Database& database, const Transfer& transfer) {
    const auto mailSlot = FindValue<uint16_t>(database, kMailSlotOf, transfer.medium.id).value_or(0);
    return {mailSlot, ElementOf(database, transfer.slot)};
}

ElementPair ElementsOfExport(Database& database, const Transfer& transfer) {
    const int32_t jukebox = transfer.slot.jukebox;
    RequireMailSlots(database, jukebox);
    const auto mailSlot = FindValue<uint16_t>(database, kFreeMailSlot, jukebox);
    if (!mailSlot.has_value()) throw Refuse(Code::MailSlotsFull, {FindJukebox(database, jukebox).name});
    return {ElementOf(database, transfer.slot), *mailSlot};
}

LoadPlan PlanLoad(Database& database, const Slot& slot, int32_t side, const std::vector<uint16_t>& taken) {
    LoadPlan plan{slot, ElementOf(database, slot.place), 0, 0, {}};
    const bool isDoubleSided = IsDoubleSided(database, slot.place.jukebox);
    if (side == 1 && !isDoubleSided) {
        throw Refuse(Code::NoSuchSide, {"the medium in " + PlaceText(database, slot.place), "B"});
    }
    if (side != 1) plan.sides.push_back(0);
    if (side == 1 || (side == kBothSides && isDoubleSided)) plan.sides.push_back(1);
    Statement row(database, kUsableDrives, slot.place.jukebox);
    while (row.Next()) {
        row >> plan.driveNumber >> plan.drive;
        if (std::ranges::find(taken, plan.drive) == taken.end()) return plan;
    }
    const char* reason = taken.empty() ? "all are disabled, missing or without an address"
                                       : "the others are disabled or missing, and there is a medium in it";
    throw Refuse(Code::NoUsableDrive, {FindJukebox(database, slot.place.jukebox).name, reason});
}

uint32_t RecordReadings(Database& database, const Medium& medium, const std::vector<ReadSide>& sides) {
    const auto isBad = [](const ReadSide& side) { return side.reading.content == Content::Bad; };
    int32_t sideCount = 1;
    for (const ReadSide& side : sides) {
        RecordSide(database, medium, side);
        sideCount = std::max(sideCount, side.side + 1);
    }
    const auto good = std::ranges::find_if_not(sides, isBad);
    const uint32_t type = good == sides.end() ? medium.type : good->reading.mediumType;
    Run(database, kSetMedium, medium.id, type, sideCount);
    return type;
}

void SetKnownState(Database& database, const Medium& medium, SlotState state) {
    Run(database, kSetKnownState, medium.id, state);
}

void MarkUnread(Database& database, const Slot& slot) {
    SetSlotState(database, slot.place, SlotState::Unknown);
    SetKnownState(database, *slot.medium, SlotState::Unknown);
}

void ConfirmWriting(Database& database, const WritePlan& plan, const WrittenSides& written) {
    const Slot& slot = plan.slot;
    const SideAfter end = written.end.side;
    if (!written.sides.empty()) RecordReadAgain(database, slot, written.sides);
    if (end == SideAfter::Unknown) MarkUnread(database, slot);
    if (end == SideAfter::Untouched && written.sides.empty()) {
        SetSlotState(database, slot.place, slot.state);
        SetKnownState(database, *slot.medium, slot.state);
    }
}

}  // namespace embedded
