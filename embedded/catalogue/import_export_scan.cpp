#include "embedded/catalogue/import_export_scan.h"

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

constexpr Sql kLastPositionInStation = R"sql(
    SELECT slot FROM medium WHERE place = ?1 AND jukebox = ?2 AND magazine = 0 ORDER BY slot DESC LIMIT 1
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
    const std::string name = FindJukebox(database, jukebox).name;
    throw Refuse(Code::NoMedium, {"the import station of jukebox \"" + name + "\""});
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

std::string ImportText(Database& database, const Transfer& transfer) {
    return "imported: " + LocationText(database, transfer.slot) + " (" +
           MediumText(database, transfer.medium) + ")";
}

std::string ExportText(Database& database, const Transfer& transfer) {
    return "exported: " + LocationText(database, transfer.slot) + " (" +
           MediumText(database, transfer.medium) + ")";
}

std::string ScanText(Database& database, const Slot& slot) {
    std::string text = "scanned: " + LocationText(database, slot.place);
    if (slot.medium.has_value()) text += " (" + MediumText(database, *slot.medium) + ")";
    return text;
}

ChangeMade ImportMedium(Database& database, const SlotKey& key) {
    const Transfer transfer = PlanImport(database, key);
    const auto& [medium, place] = transfer;
    SetMediumPlace(database, medium.id, Place::Slot, place);
    NumberNewVolumes(database, medium);
    SetSlotState(database, place, IsReadable(database, medium) ? SlotState::Full : SlotState::ScanFailed);
    RefreshVolumesOf(database, medium);
    return {ImportText(database, transfer), DrivenMedium(database, place, medium, kBothSides)};
}

ChangeMade ExportMedium(Database& database, const SlotKey& key) {
    const Transfer transfer = PlanExport(database, key);
    const auto& [medium, place] = transfer;
    const int32_t last =
        FindValue<int32_t>(database, kLastPositionInStation, Place::ExportStation, place.jukebox)
            .value_or(-1);
    SetMediumPlace(database, medium.id, Place::ExportStation, {place.jukebox, 0, last + 1});
    SetSlotState(database, place, SlotState::Empty);
    RefreshVolumesOf(database, medium);
    return {ExportText(database, transfer), MovedMedium(database, place, medium)};
}

ScanResult ScanMedium(Database& database, const SideKey& key) {
    const Slot slot = FindSlotToScan(database, key);
    ScanResult result;
    SlotState found = SlotState::Full;
    if (!slot.medium.has_value()) {
        found = SlotState::Empty;
        result.refusal = Refuse(Code::NoMedium, {PlaceText(database, slot.place)});
    } else if (!IsReadable(database, *slot.medium)) {
        found = SlotState::ScanFailed;
        result.refusal = Refuse(Code::SideUnreadable, {"the medium in " + PlaceText(database, slot.place)});
    }
    if (slot.medium.has_value())
        result.change.medium = DrivenMedium(database, slot.place, *slot.medium, key.side);
    if (found != slot.state) {
        SetSlotState(database, slot.place, found);
        result.change.words = ScanText(database, slot);
    }
    return result;
}

}  // namespace embedded
