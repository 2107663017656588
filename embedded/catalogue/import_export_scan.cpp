#include "embedded/catalogue/import_export_scan.h"

#include <algorithm>

#include "embedded/catalogue/attached_media.h"
#include "embedded/catalogue/item_texts.h"
#include "embedded/catalogue/items.h"
#include "embedded/catalogue/volume_changes.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

// INDEXED BY keeps the search for an empty slot from going through the full ones before it.
constexpr Sql kFirstEmptySlot = R"sql(
    SELECT s.magazine, s.number, g.present
    FROM slot s INDEXED BY slot_empty
    CROSS JOIN magazine g ON g.jukebox = s.jukebox AND g.number = s.magazine
    WHERE s.jukebox = ?1 AND s.magazine >= ?2 AND s.state = 3
    ORDER BY s.magazine, s.number LIMIT 1
)sql";

constexpr Sql kFirstEmptySlotOfMagazine = R"sql(
    SELECT s.number FROM slot s INDEXED BY slot_empty
    WHERE s.jukebox = ?1 AND s.magazine = ?2 AND s.state = 3
    ORDER BY s.number LIMIT 1
)sql";

constexpr Sql kFirstFullSlot = R"sql(
    SELECT d.magazine, d.slot, g.present
    FROM medium d
    CROSS JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine
    WHERE d.place = 1 AND d.jukebox = ?1 AND d.magazine >= ?2
    ORDER BY d.magazine, d.slot LIMIT 1
)sql";

constexpr Sql kFirstFullSlotOfMagazine = R"sql(
    SELECT d.slot FROM medium d
    WHERE d.place = 1 AND d.jukebox = ?1 AND d.magazine = ?2
    ORDER BY d.slot LIMIT 1
)sql";

constexpr Sql kNextWaitingMedium = R"sql(
    SELECT id, type FROM medium WHERE place = 2 AND jukebox = ?1 AND magazine = 0 ORDER BY slot LIMIT 1
)sql";

// In a real jukebox, a medium that was exported lies in its mail slot until somebody takes it out. It can
// come back, after those that somebody put in.
constexpr Sql kExportedMedium = R"sql(
    SELECT d.id, d.type FROM server s CROSS JOIN medium d
    WHERE s.id = 1 AND s.kind = 1 AND d.place = 3 AND d.jukebox = ?1 AND d.magazine = 0 ORDER BY d.slot LIMIT 1
)sql";

// How a call that names no slot finds one.
struct SlotSearch {
    Sql ofJukebox;          // from a magazine on: its magazine, its number, whether the magazine is present
    Sql ofMagazine;         // its number
    const char* noneState;  // of a jukebox or a magazine that has no such slot
};

constexpr SlotSearch kEmptySlot{kFirstEmptySlot, kFirstEmptySlotOfMagazine, "full"};
constexpr SlotSearch kFullSlot{kFirstFullSlot, kFirstFullSlotOfMagazine, "empty"};

// A jukebox or a magazine that has no slot left to import to, or to export from, is already as
// the caller wants it.
Refusal AlreadySo(Database& database, const SlotKey& key, const char* state) {
    const std::string item = key.magazine < 0
                                 ? "jukebox \"" + FindJukebox(database, key.jukeboxId).name + "\""
                                 : MagazineText(database, key.jukeboxId, key.magazine);
    return Refuse(Code::AlreadySo, {item, state});
}

// Passes magazines that are not present, however many slots they have.
std::optional<SlotPlace> FindSlotInJukebox(Database& database, int32_t jukebox, Sql search) {
    for (int32_t magazine = 0;;) {
        Statement row(database, search, jukebox, magazine);
        if (!row.Next()) return std::nullopt;
        const auto [found, slot, isPresent] = row.Read<int32_t, int32_t, bool>();
        if (isPresent) return SlotPlace{jukebox, found, slot};
        magazine = found + 1;
    }
}

// The slot that the key names, or else the first one that the call can use.
SlotPlace ChooseSlot(Database& database, const SlotKey& key, const SlotSearch& search) {
    if (key.slot >= 0) return ResolveSlot(database, key.jukeboxId, key.magazine, key.slot);
    if (key.magazine >= 0) {
        RequirePresentMagazine(database, key.jukeboxId, key.magazine);
        const auto slot = FindValue<int32_t>(database, search.ofMagazine, key.jukeboxId, key.magazine);
        if (slot.has_value()) return {key.jukeboxId, key.magazine, *slot};
    } else {
        const auto place = FindSlotInJukebox(database, key.jukeboxId, search.ofJukebox);
        if (place.has_value()) return *place;
    }
    throw AlreadySo(database, key, search.noneState);
}

void RequireEmptySlot(Database& database, const SlotPlace& place) {
    const Slot slot = FindSlot(database, place);
    RequirePresentSlot(database, slot);
    if (slot.state == SlotState::Empty) return;
    throw Refuse(Code::SlotNotUsable, {PlaceText(database, place), "not empty"});
}

Medium FindWaitingMedium(Database& database, int32_t jukebox) {
    for (const Sql& sql : {kNextWaitingMedium, kExportedMedium}) {
        Statement row(database, sql, jukebox);
        if (!row.Next()) continue;
        Medium medium;
        row >> medium.id >> medium.type;
        return medium;
    }
    RequireMailSlots(database, jukebox);
    const std::string name = FindJukebox(database, jukebox).name;
    throw Refuse(Code::NoMedium, {"the import station of jukebox \"" + name + "\""});
}

SlotState StateAfterReading(const std::vector<ReadSide>& sides) {
    const bool isReadable =
        std::ranges::any_of(sides, [](const ReadSide& read) { return read.reading.content != Content::Bad; });
    return isReadable ? SlotState::Full : SlotState::ScanFailed;
}

std::string ScanText(Database& database, const SlotPlace& place, const Medium& medium) {
    return "scanned: " + LocationText(database, place) + " (" + MediumText(database, medium) + ")";
}

CallOutcome RecordEmptySlot(Database& database, const Slot& slot) {
    CallOutcome outcome;
    if (slot.state != SlotState::Empty) {
        SetSlotState(database, slot.place, SlotState::Empty);
        outcome.change.words = "scanned: " + LocationText(database, slot.place);
    }
    outcome.refusal = Refuse(Code::NoMedium, {PlaceText(database, slot.place)});
    return outcome;
}

}  // namespace

Transfer PlanImport(Database& database, const SlotKey& key) {
    RequireEnabledJukebox(database, key.jukeboxId);
    // A slot that does not exist is refused as such, whether or not a medium waits.
    if (key.slot >= 0) FindSlot(database, ResolveSlot(database, key.jukeboxId, key.magazine, key.slot));
    const Medium medium = FindWaitingMedium(database, key.jukeboxId);
    const SlotPlace place = ChooseSlot(database, key, kEmptySlot);
    RequireEmptySlot(database, place);
    return {medium, place};
}

Transfer PlanExport(Database& database, const SlotKey& key) {
    RequireEnabledJukebox(database, key.jukeboxId);
    const SlotPlace place = ChooseSlot(database, key, kFullSlot);
    return {*FindSlotWithMedium(database, place).medium, place};
}

Slot FindSlotToScan(Database& database, const SideKey& key) {
    if (key.side < 0 || key.side > 2) {
        throw Refuse(Code::NoSuchSide, {"the medium to scan", std::to_string(key.side)});
    }
    if (key.slot < 0) throw Refuse(Code::NotANumberedItem, {"the slot number", "KrvMediaScan"});
    RequireEnabledJukebox(database, key.jukeboxId);
    Slot slot = FindSlot(database, ResolveSlot(database, key.jukeboxId, key.magazine, key.slot));
    RequirePresentSlot(database, slot);
    return slot;
}

CallOutcome RecordImport(Database& database, const Transfer& transfer, const std::vector<ReadSide>& sides) {
    const auto& [medium, place] = transfer;
    if (!sides.empty()) {
        NumberNewVolumes(database, medium);
        SetSlotState(database, place, StateAfterReading(sides));
        RefreshVolumesOf(database, medium);
    }
    CallOutcome outcome;
    outcome.change.words =
        "imported: " + LocationText(database, place) + " (" + MediumText(database, medium) + ")";
    outcome.change.medium = Handled(database, place, medium, SidesOfKey(kBothSides, sides.size()));
    return outcome;
}

CallOutcome RecordExport(Database& database, const Transfer& transfer) {
    const auto& [medium, place] = transfer;
    SetSlotState(database, place, SlotState::Empty);
    RefreshVolumesOf(database, medium);
    CallOutcome outcome;
    outcome.change.words =
        "exported: " + LocationText(database, place) + " (" + MediumText(database, medium) + ")";
    outcome.change.medium = Handled(database, place, medium, HandledSides::None);
    return outcome;
}

CallOutcome RecordScan(Database& database, const Slot& slot, int32_t side,
                       const std::vector<ReadSide>& sides) {
    if (!slot.medium.has_value()) return RecordEmptySlot(database, slot);
    const bool isNew = std::ranges::any_of(sides, [](const ReadSide& read) { return !read.isOnRecord; });
    Medium medium = *slot.medium;
    if (isNew) medium.type = RecordReadings(database, medium, sides);
    // One good side is enough, be it one that was not read now.
    SlotState found = StateAfterReading(sides);
    if (found == SlotState::ScanFailed && IsReadable(database, medium)) found = SlotState::Full;
    CallOutcome outcome;
    if (isNew || found != slot.state) {
        SetSlotState(database, slot.place, found);
        outcome.change.words = ScanText(database, slot.place, medium);
    }
    if (isNew) {
        SetKnownState(database, medium, found);
        RefreshVolumesOf(database, medium);
    }
    outcome.change.medium = Handled(database, slot.place, medium, SidesOfKey(side, sides.size()));
    if (found == SlotState::ScanFailed) {
        outcome.refusal = Refuse(Code::SideUnreadable, {"the medium in " + PlaceText(database, slot.place)});
    }
    return outcome;
}

}  // namespace embedded
