#include "embedded/catalogue/read_ahead.h"

#include "embedded/catalogue/items.h"
#include "embedded/catalogue/records.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

// The ID, then the columns of ReadVolumeRecord.
constexpr Sql kVolumes = R"sql(
    SELECT id, type, state, file_system, label, total, free, value1, value2 FROM volume
    WHERE id > ?1 ORDER BY id LIMIT ?2
)sql";

constexpr Sql kDirectoriesOfVolumes = R"sql(
    SELECT volume, name FROM directory WHERE volume BETWEEN ?1 AND ?2 ORDER BY volume, position
)sql";

// CROSS JOIN keeps the order of the tables as written.
constexpr Sql kSidesInSlots = R"sql(
    SELECT i.volume, d.jukebox, d.magazine, d.slot, i.side, d.type, i.content, i.finalization
    FROM side i
    CROSS JOIN medium d ON d.id = i.medium
    WHERE i.volume BETWEEN ?1 AND ?2 AND i.volume IS NOT NULL AND d.place = 1
    ORDER BY i.volume, i.part
)sql";

constexpr size_t kBatch = 128;
// Enough for every farm that has its jukeboxes in one place; more are looked up one by one.
constexpr size_t kMostJukeboxes = 1024;

bool IsSame(const SideKey& left, const SideKey& right) {
    return left.jukeboxId == right.jukeboxId && left.magazine == right.magazine && left.slot == right.slot &&
           left.side == right.side;
}

}  // namespace

void ReadAhead::Forget() {
    m_count = 0;
    m_current = 0;
    m_slotStates.Forget();
    m_jukeboxes.clear();
}

uint32_t ReadAhead::NextVolume(Database& database, uint32_t previous) {
    const bool goesThrough = previous != 0 && previous == m_lastAnswer;
    if (!goesThrough) {
        m_lastAnswer = embedded::NextVolume(database, previous);
        return m_lastAnswer;
    }
    const bool isAhead = m_current + 1 < m_count && m_batch[m_current].id == previous;
    if (isAhead) {
        ++m_current;
    } else {
        ReadBatch(database, previous);
    }
    m_lastAnswer = m_current < m_count ? m_batch[m_current].id : 0;
    return m_lastAnswer;
}

void ReadAhead::ReadBatch(Database& database, uint32_t previous) {
    m_count = 0;
    m_current = 0;
    m_batch.resize(kBatch);
    Statement row(database, kVolumes, previous, kBatch);
    while (row.Next()) {
        Volume& volume = m_batch[m_count++];
        row >> volume.id;
        volume.record = ReadVolumeRecord(row);
        volume.aspects.clear();
        volume.places.clear();
    }
    if (m_count == 0) return;
    const uint32_t first = m_batch.front().id;
    const uint32_t last = m_batch[m_count - 1].id;
    AttachDirectories(database, first, last);
    AttachPlaces(database, first, last);
}

// Directories and places come in the order of the batch. A row that belongs to none of its volumes is passed
// over: a damaged farm must not lead beyond the batch.
ReadAhead::Volume* ReadAhead::FindFrom(size_t& position, uint32_t id) {
    while (position < m_count && m_batch[position].id < id)
        ++position;
    return position < m_count && m_batch[position].id == id ? &m_batch[position] : nullptr;
}

void ReadAhead::AttachDirectories(Database& database, uint32_t first, uint32_t last) {
    size_t position = 0;
    Statement row(database, kDirectoriesOfVolumes, first, last);
    while (row.Next()) {
        if (Volume* owner = FindFrom(position, row.Read<uint32_t>())) {
            owner->aspects.append(row.Read<std::string_view>()).push_back('\0');
        }
    }
    for (Volume& volume : std::span(m_batch).first(m_count)) {
        if (!volume.aspects.empty()) volume.aspects.push_back('\0');
    }
}

// Sides in slots of present magazines are the volume's places.
void ReadAhead::AttachPlaces(Database& database, uint32_t first, uint32_t last) {
    size_t position = 0;
    Statement row(database, kSidesInSlots, first, last);
    while (row.Next()) {
        Volume* owner = FindFrom(position, row.Read<uint32_t>());
        if (owner == nullptr) continue;
        const auto [jukebox, magazine, slot] = row.Read<int64_t, int64_t, int64_t>();
        const auto state = m_slotStates.Find(database, jukebox, magazine, slot);
        if (!state.has_value()) continue;
        Medium medium;
        Side side;
        row >> side.number >> medium.type >> side.content >> side.finalization;
        side.volume = static_cast<int32_t>(owner->id);
        const SideKey place{sizeof(SideKey), static_cast<int32_t>(jukebox), static_cast<int32_t>(magazine),
                            static_cast<int32_t>(slot), side.number};
        owner->places.push_back({place, SideRecordOf(*state, medium, side)});
    }
}

const ReadAhead::Volume* ReadAhead::FindVolume(uint32_t id) {
    if (m_current < m_count && m_batch[m_current].id == id) return &m_batch[m_current];
    return nullptr;
}

const SideRecord* ReadAhead::FindSide(const SideKey& key) const {
    if (m_current >= m_count) return nullptr;
    for (const PlacedSide& placed : m_batch[m_current].places) {
        if (IsSame(placed.place, key)) return IsUnreadable(placed.record) ? nullptr : &placed.record;
    }
    return nullptr;
}

const JukeboxRecord* ReadAhead::FindJukebox(int32_t jukebox) const {
    const auto found = m_jukeboxes.find(jukebox);
    return found == m_jukeboxes.end() ? nullptr : &found->second;
}

void ReadAhead::KeepJukebox(int32_t jukebox, const JukeboxRecord& record) {
    if (m_jukeboxes.size() < kMostJukeboxes) m_jukeboxes.emplace(jukebox, record);
}

}  // namespace embedded
