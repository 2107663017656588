#include "embedded/catalogue/items.h"

#include <algorithm>

#include "embedded/catalogue/item_texts.h"
#include "embedded/model/refusal.h"
#include "embedded/store/statement.h"

// In these statements CROSS JOIN keeps the order of the tables as written: each is searched by the one before
// it. medium.place 1 is a slot.

namespace embedded {
namespace {

constexpr Sql kJukebox = R"sql(
    SELECT name, enabled, magazine_count FROM jukebox WHERE id = ?1
)sql";

constexpr Sql kMagazine = R"sql(
    SELECT slot_count, present FROM magazine WHERE jukebox = ?1 AND number = ?2
)sql";

constexpr Sql kAbsoluteSlot = R"sql(
    SELECT first_slot + ?3 FROM magazine WHERE jukebox = ?1 AND number = ?2
)sql";

// The last magazine that begins at the slot or before it.
constexpr Sql kMagazineOfAbsoluteSlot = R"sql(
    SELECT number, first_slot, slot_count FROM magazine WHERE jukebox = ?1 AND first_slot <= ?2
    ORDER BY first_slot DESC, number DESC LIMIT 1
)sql";

constexpr Sql kFirstMagazineWithoutSlots = R"sql(
    SELECT number FROM magazine WHERE jukebox = ?1 AND (present = 0 OR slot_count = 0) ORDER BY number LIMIT 1
)sql";

constexpr Sql kSlot = R"sql(
    SELECT g.present, s.state, d.id, d.type
    FROM magazine g
    CROSS JOIN slot s ON s.jukebox = g.jukebox AND s.magazine = g.number
    LEFT JOIN medium d ON d.place = 1 AND d.jukebox = s.jukebox AND d.magazine = s.magazine AND d.slot = s.number
    WHERE g.jukebox = ?1 AND g.number = ?2 AND s.number = ?3
)sql";

constexpr Sql kSetSlotState = R"sql(
    UPDATE slot SET state = ?4 WHERE jukebox = ?1 AND magazine = ?2 AND number = ?3
)sql";

constexpr Sql kSide = R"sql(
    SELECT side, content, finalization, sequential, volume FROM side WHERE medium = ?1 AND side = ?2
)sql";

constexpr Sql kSidesOfMedium = R"sql(
    SELECT side, content, finalization, sequential, volume FROM side WHERE medium = ?1 ORDER BY side
)sql";

constexpr Sql kVolume = R"sql(
    SELECT type, state, enabled, label, total FROM volume WHERE id = ?1
)sql";

constexpr Sql kLocations = R"sql(
    SELECT d.jukebox, d.magazine, d.slot, i.side
    FROM side i
    CROSS JOIN medium d ON d.id = i.medium
    CROSS JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine
    WHERE i.volume = ?1 AND d.place = 1 AND g.present = 1
    ORDER BY i.part
)sql";

constexpr Sql kEndOfShelf = R"sql(SELECT max(slot) + 1 FROM medium WHERE place = 4)sql";
constexpr Sql kSetMediumPlace = R"sql(
    UPDATE medium SET place = ?2, jukebox = ?3, magazine = ?4, slot = ?5 WHERE id = ?1
)sql";

Side ReadSideRow(Statement& row) {
    Side side;
    row >> side.number >> side.content >> side.finalization >> side.isSequential >> side.volume;
    return side;
}

Refusal NotPresent(Database& database, int32_t jukebox, int32_t magazine) {
    return Refuse(Code::SlotNotUsable, {MagazineText(database, jukebox, magazine), "not present"});
}

}  // namespace

Jukebox FindJukebox(Database& database, int32_t jukebox) {
    Statement row(database, kJukebox, jukebox);
    if (!row.Next()) throw Refuse(Code::NoJukebox, {std::to_string(jukebox)});
    Jukebox found;
    row >> found.name >> found.isEnabled >> found.magazineCount;
    return found;
}

void RequireEnabledJukebox(Database& database, int32_t jukebox) {
    const Jukebox found = FindJukebox(database, jukebox);
    if (!found.isEnabled) throw Refuse(Code::JukeboxDisabled, {found.name});
}

Magazine FindMagazine(Database& database, int32_t jukebox, int32_t magazine) {
    Statement row(database, kMagazine, jukebox, magazine);
    if (!row.Next()) {
        throw Refuse(Code::NoMagazine, {FindJukebox(database, jukebox).name, OneBased(magazine)});
    }
    Magazine found;
    row >> found.slotCount >> found.isPresent;
    return found;
}

void RequirePresentMagazine(Database& database, int32_t jukebox, int32_t magazine) {
    if (!FindMagazine(database, jukebox, magazine).isPresent) throw NotPresent(database, jukebox, magazine);
}

SlotPlace ResolveSlot(Database& database, int32_t jukebox, int32_t magazine, int32_t slot) {
    if (magazine != -1) return {jukebox, magazine, slot};
    const std::string name = FindJukebox(database, jukebox).name;
    const auto beyond = [&] { return Refuse(Code::NoAbsoluteSlot, {OneBased(slot), name}); };
    Statement row(database, kMagazineOfAbsoluteSlot, jukebox, slot);
    if (slot < 0 || !row.Next()) throw beyond();
    const auto [number, firstSlot, slotCount] = row.Read<int32_t, int32_t, int32_t>();
    if (slot - firstSlot >= slotCount) throw beyond();
    const auto gap = FindValue<int32_t>(database, kFirstMagazineWithoutSlots, jukebox);
    if (gap.has_value() && *gap <= number) throw beyond();
    return {jukebox, number, slot - firstSlot};
}

Slot FindSlot(Database& database, const SlotPlace& place) {
    Statement row(database, kSlot, place.jukebox, place.magazine, place.slot);
    if (!row.Next()) {
        RequirePresentMagazine(database, place.jukebox, place.magazine);
        throw Refuse(Code::NoSlot, {OneBased(place.magazine), FindJukebox(database, place.jukebox).name,
                                    OneBased(place.slot)});
    }
    if (!row.Read<bool>()) throw NotPresent(database, place.jukebox, place.magazine);
    Slot slot{place, row.Read<SlotState>(), std::nullopt};
    if (const auto medium = row.Read<std::optional<int64_t>>()) {
        slot.medium = Medium{*medium, row.Read<uint32_t>()};
    }
    return slot;
}

void RequirePresentSlot(Database& database, const Slot& slot) {
    if (slot.state != SlotState::NotPresent) return;
    throw Refuse(Code::SlotNotUsable, {PlaceText(database, slot.place), "not present"});
}

Slot FindSlotWithMedium(Database& database, const SlotPlace& place) {
    Slot slot = FindSlot(database, place);
    RequirePresentSlot(database, slot);
    if (!slot.medium.has_value()) throw Refuse(Code::NoMedium, {PlaceText(database, place)});
    return slot;
}

int32_t AbsoluteSlot(Database& database, const SlotPlace& place) {
    return FindValue<int32_t>(database, kAbsoluteSlot, place.jukebox, place.magazine, place.slot)
        .value_or(place.slot);
}

void SetSlotState(Database& database, const SlotPlace& place, SlotState state) {
    Run(database, kSetSlotState, place.jukebox, place.magazine, place.slot, state);
}

int32_t EndOfShelf(Database& database) {
    return FindValue<int32_t>(database, kEndOfShelf).value_or(0);
}

void SetMediumPlace(Database& database, int64_t medium, Place place, const SlotPlace& to) {
    Run(database, kSetMediumPlace, medium, place, to.jukebox, to.magazine, to.slot);
}

std::optional<Side> FindSide(Database& database, const Medium& medium, int32_t side) {
    Statement row(database, kSide, medium.id, side);
    if (!row.Next()) return std::nullopt;
    return ReadSideRow(row);
}

std::vector<Side> FindSides(Database& database, const Medium& medium) {
    std::vector<Side> sides;
    Statement row(database, kSidesOfMedium, medium.id);
    while (row.Next())
        sides.push_back(ReadSideRow(row));
    return sides;
}

bool IsReadable(Database& database, const Medium& medium) {
    return std::ranges::any_of(FindSides(database, medium),
                               [](const Side& side) { return side.content != Content::Bad; });
}

std::optional<Volume> FindVolume(Database& database, int64_t volume) {
    Statement row(database, kVolume, volume);
    if (!row.Next()) return std::nullopt;
    Volume found;
    row >> found.type >> found.shownState >> found.isEnabled >> found.label >> found.total;
    return found;
}

int32_t RequireVolume(Database& database, uint32_t volume) {
    const bool isKnown =
        volume != 0 && volume <= INT32_MAX && FindVolume(database, int64_t{volume}).has_value();
    if (!isKnown) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    return static_cast<int32_t>(volume);
}

std::vector<SideKey> FindLocations(Database& database, int64_t volume) {
    std::vector<SideKey> locations;
    Statement row(database, kLocations, volume);
    while (row.Next()) {
        SideKey& key = locations.emplace_back(SideKey{sizeof(SideKey), 0, 0, 0, 0});
        row >> key.jukeboxId >> key.magazine >> key.slot >> key.side;
    }
    return locations;
}

}  // namespace embedded
