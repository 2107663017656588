#include "embedded/catalogue/element_sync.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <set>

#include "embedded/catalogue/enable_disable_rename.h"
#include "embedded/catalogue/items.h"
#include "embedded/catalogue/volume_changes.h"
#include "embedded/model/media_types.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

// medium.place 1 is a slot, 2 and 3 are mail slots, before the import and after the export.
constexpr Sql kElements = R"sql(
    SELECT e.kind, e.address, e.reported, d.id, k.tag
    FROM element e
    LEFT JOIN medium d ON d.jukebox = e.jukebox AND d.magazine = e.magazine AND d.slot = e.number
        AND d.place IN (CASE e.kind WHEN 2 THEN 1 WHEN 3 THEN 2 END, CASE e.kind WHEN 3 THEN 3 END)
    LEFT JOIN known_medium k ON k.medium = d.id
    WHERE e.jukebox = ?1 ORDER BY e.address
)sql";
constexpr Sql kIntent = R"sql(SELECT medium, source, destination, time FROM intent WHERE jukebox = ?1)sql";
constexpr Sql kChangers = R"sql(SELECT jukebox FROM changer WHERE jukebox > 0 ORDER BY jukebox)sql";

constexpr Sql kGeneration = R"sql(SELECT generation FROM server WHERE id = 1)sql";
constexpr Sql kNextGeneration = R"sql(UPDATE server SET generation = generation + 1 WHERE id = 1)sql";
constexpr Sql kBeginMove = R"sql(
    INSERT OR REPLACE INTO intent (jukebox, medium, source, destination, time) VALUES (?1, ?2, ?3, ?4, ?5)
)sql";
constexpr Sql kEndMove = R"sql(DELETE FROM intent WHERE jukebox = ?1)sql";

constexpr Sql kElementPlace = R"sql(
    SELECT kind, magazine, number FROM element WHERE jukebox = ?1 AND address = ?2
)sql";
constexpr Sql kSetReported = R"sql(UPDATE element SET reported = ?3 WHERE jukebox = ?1 AND address = ?2)sql";
constexpr Sql kReportedInMagazine = R"sql(
    SELECT count(*) FROM element WHERE jukebox = ?1 AND kind = 2 AND magazine = ?2 AND reported = 1
)sql";
constexpr Sql kStateInSlot = R"sql(
    SELECT k.state FROM medium d CROSS JOIN known_medium k ON k.medium = d.id
    WHERE d.place = 1 AND d.jukebox = ?1 AND d.magazine = ?2 AND d.slot = ?3
)sql";

constexpr Sql kMediumPlace = R"sql(SELECT place, jukebox, magazine, slot FROM medium WHERE id = ?1)sql";
constexpr Sql kAddMedium = R"sql(
    INSERT INTO medium (type, sides, place, jukebox, magazine, slot) VALUES (?1, 1, 4, 0, 0, ?2) RETURNING id
)sql";
constexpr Sql kAddSide = R"sql(
    INSERT INTO side (medium, side, content, finalization, sequential, volume, part)
    VALUES (?1, 0, ?2, ?3, 0, NULL, 0)
)sql";
constexpr Sql kAddKnown = R"sql(INSERT INTO known_medium (medium, tag, state) VALUES (?1, ?2, ?3))sql";
constexpr Sql kKnownState = R"sql(SELECT state FROM known_medium WHERE medium = ?1)sql";
constexpr Sql kSetTag = R"sql(UPDATE known_medium SET tag = ?2 WHERE medium = ?1)sql";
constexpr Sql kOnShelfByTag = R"sql(
    SELECT k.medium FROM known_medium k CROSS JOIN medium d ON d.id = k.medium
    WHERE k.tag = ?1 AND k.tag <> '' AND d.place = 4 ORDER BY k.medium LIMIT 1
)sql";

// Brings one farm up to date.
class Synchronizer {
  public:
    explicit Synchronizer(Database& database) : m_database(database) {}

    // Media leave their places before any comes to a new one: two may have changed places, even from one
    // jukebox to another.
    void Clear(const Reconciliation& found) {
        for (const int64_t medium : found.removed)
            PutOnShelf(medium);
        for (const Placement& placement : found.placed) {
            if (placement.medium != 0) PutOnShelf(placement.medium);
        }
        for (const Tagging& tagging : found.tagged)
            Run(m_database, kSetTag, tagging.medium, tagging.tag);
    }

    void Fill(int32_t jukebox, const Reconciliation& found) {
        for (const Placement& placement : found.placed)
            Put(jukebox, placement);
        std::set<int32_t> magazines;
        for (const uint16_t address : found.disappeared)
            NoteReport(jukebox, address, false, magazines);
        for (const uint16_t address : found.appeared)
            NoteReport(jukebox, address, true, magazines);
        for (const int32_t magazine : magazines)
            UpdateMagazine(jukebox, magazine);
    }

    void Finish() {
        for (const int64_t medium : m_touched)
            RefreshVolumesOf(m_database, {medium, 0});
    }

  private:
    struct ElementPlace {
        ElementKind kind = ElementKind::Slot;
        int32_t magazine = 0;
        int32_t number = 0;
    };

    ElementPlace PlaceOf(int32_t jukebox, uint16_t address) {
        ElementPlace place;
        Statement row(m_database, kElementPlace, jukebox, address);
        if (row.Next()) row >> place.kind >> place.magazine >> place.number;
        return place;
    }

    void PutOnShelf(int64_t medium) {
        Place place = Place::Shelf;
        SlotPlace slot;
        {
            Statement row(m_database, kMediumPlace, medium);
            if (!row.Next()) return;
            row >> place >> slot.jukebox >> slot.magazine >> slot.slot;
        }
        if (place == Place::Shelf) return;
        SetMediumPlace(m_database, medium, Place::Shelf, {0, 0, EndOfShelf(m_database)});
        if (place == Place::Slot) SetSlotState(m_database, slot, SlotState::Empty);
        m_touched.insert(medium);
    }

    int64_t NewMedium(const std::string& tag) {
        const int64_t medium =
            FindValue<int64_t>(m_database, kAddMedium, kUnknownMedium, EndOfShelf(m_database)).value_or(0);
        Run(m_database, kAddSide, medium, Content::Blank, Finalization::Unknown);
        Run(m_database, kAddKnown, medium, tag, SlotState::Unknown);
        return medium;
    }

    void Put(int32_t jukebox, const Placement& placement) {
        int64_t medium = placement.medium;
        if (medium == 0) medium = FindValue<int64_t>(m_database, kOnShelfByTag, placement.tag).value_or(0);
        if (medium == 0) medium = NewMedium(placement.tag);
        if (!placement.tag.empty()) Run(m_database, kSetTag, medium, placement.tag);
        const ElementPlace at = PlaceOf(jukebox, placement.element);
        Place place = Place::Slot;
        if (at.kind == ElementKind::MailSlot)
            place = placement.isExport ? Place::ExportStation : Place::ImportStation;
        SetMediumPlace(m_database, medium, place, {jukebox, at.magazine, at.number});
        if (place == Place::Slot) {
            const auto state = FindValue<SlotState>(m_database, kKnownState, medium);
            SetSlotState(m_database, {jukebox, at.magazine, at.number}, state.value_or(SlotState::Unknown));
        }
        m_touched.insert(medium);
    }

    void NoteReport(int32_t jukebox, uint16_t address, bool isReported, std::set<int32_t>& magazines) {
        Run(m_database, kSetReported, jukebox, address, isReported);
        const ElementPlace at = PlaceOf(jukebox, address);
        if (at.kind != ElementKind::Slot) return;
        magazines.insert(at.magazine);
        const SlotPlace slot{jukebox, at.magazine, at.number};
        const auto state = FindValue<SlotState>(m_database, kStateInSlot, jukebox, at.magazine, at.number);
        if (isReported) {
            SetSlotState(m_database, slot, state.value_or(SlotState::Empty));
        } else if (!state.has_value()) {
            SetSlotState(m_database, slot, SlotState::NotPresent);
        }
    }

    // A magazine is present while the changer tells of any of its slots.
    void UpdateMagazine(int32_t jukebox, int32_t magazine) {
        const auto reported =
            FindValue<int64_t>(m_database, kReportedInMagazine, jukebox, magazine).value_or(0);
        (void)EnableMagazine(m_database, {sizeof(MagazineKey), jukebox, magazine},
                             reported > 0 ? Enabled::Yes : Enabled::No);
    }

    Database& m_database;
    std::set<int64_t> m_touched;
};

}  // namespace

KnownJukebox ReadKnownJukebox(Database& database, int32_t jukebox) {
    KnownJukebox known;
    {
        Statement row(database, kElements, jukebox);
        while (row.Next()) {
            KnownElement& element = known.elements.emplace_back();
            row >> element.kind >> element.address >> element.isReported;
            element.medium = row.Read<std::optional<int64_t>>().value_or(0);
            element.tag = row.Read<std::optional<std::string>>().value_or("");
        }
    }
    known.intent = FindIntent(database, jukebox);
    return known;
}

std::optional<Intent> FindIntent(Database& database, int32_t jukebox) {
    Statement row(database, kIntent, jukebox);
    if (!row.Next()) return std::nullopt;
    Intent intent;
    row >> intent.medium >> intent.source >> intent.destination >> intent.begun;
    return intent;
}

std::vector<int32_t> AttachedJukeboxes(Database& database) {
    return FindValues<int32_t>(database, kChangers);
}

bool Differs(Database& database, const Sighting& sighting) {
    const KnownJukebox known = ReadKnownJukebox(database, sighting.jukebox);
    if (known.intent.has_value() && sighting.robot == Robot::AtRest) return true;
    return !Reconcile(known, sighting.elements, sighting.robot).IsEmpty();
}

std::vector<std::vector<LoadedMedium>> Synchronize(Database& database,
                                                   const std::vector<Sighting>& sightings) {
    std::vector<Reconciliation> found;
    found.reserve(sightings.size());
    for (const Sighting& sighting : sightings) {
        found.push_back(
            Reconcile(ReadKnownJukebox(database, sighting.jukebox), sighting.elements, sighting.robot));
    }
    Synchronizer synchronizer(database);
    for (const Reconciliation& reconciliation : found)
        synchronizer.Clear(reconciliation);
    for (size_t i = 0; i < found.size(); ++i)
        synchronizer.Fill(sightings[i].jukebox, found[i]);
    synchronizer.Finish();
    std::vector<std::vector<LoadedMedium>> loaded;
    for (size_t i = 0; i < found.size(); ++i) {
        if (sightings[i].robot == Robot::AtRest && FindIntent(database, sightings[i].jukebox).has_value()) {
            EndMove(database, sightings[i].jukebox);
        }
        loaded.push_back(std::move(found[i].loaded));
    }
    return loaded;
}

int64_t ReadGeneration(Database& database) {
    return FindValue<int64_t>(database, kGeneration).value_or(0);
}

void BeginMove(Database& database, int32_t jukebox, const Intent& intent) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    Run(database, kBeginMove, jukebox, intent.medium, intent.source, intent.destination,
        std::chrono::duration_cast<std::chrono::microseconds>(now).count());
    Run(database, kNextGeneration);
}

void EndMove(Database& database, int32_t jukebox) {
    Run(database, kEndMove, jukebox);
    Run(database, kNextGeneration);
}

}  // namespace embedded
