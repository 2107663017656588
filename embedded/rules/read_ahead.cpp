#include "embedded/rules/read_ahead.h"

#include "embedded/rules/looking.h"
#include "embedded/rules/records.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

constexpr size_t kBatch = 128;
// Enough for every farm that has its jukeboxes in one place; more are looked up one by one.
constexpr size_t kMostJukeboxes = 1024;

bool IsSame(const SideKey& left, const SideKey& right) {
    return left.jukeboxId == right.jukeboxId && left.magazine == right.magazine && left.slot == right.slot &&
           left.side == right.side;
}

ReadAhead::PlacedSide ReadPlace(const Rows& rows) {
    const MediumView medium{rows.Integer(6), rows.Unsigned(7), rows.Number(8)};
    const SideView side{rows.Number(4), static_cast<Content>(rows.Number(9)),
                        static_cast<Finalization>(rows.Number(10)), rows.Flag(11), rows.Number(0)};
    return {{sizeof(SideKey), rows.Number(1), rows.Number(2), rows.Number(3), side.side},
            DescribeSide(static_cast<SlotState>(rows.Number(5)), medium, side)};
}

}  // namespace

void ReadAhead::Forget() {
    m_count = 0;
    m_current = 0;
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
    Rows volumes(database, Sql::VolumesAhead, previous, kBatch);
    while (volumes.Next()) {
        Volume& volume = m_batch[m_count++];
        volume.id = volumes.Unsigned(0);
        volume.record = DescribeVolume(volumes);
        volume.aspects.clear();
        volume.places.clear();
    }
    if (m_count == 0) return;
    const uint32_t first = m_batch.front().id;
    const uint32_t last = m_batch[m_count - 1].id;
    AttachDirectories(database, first, last);
    AttachPlaces(database, first, last);
}

// The rows of both come in the order of the batch. One that belongs to no volume is passed over:
// a damaged farm must not lead beyond the batch.
ReadAhead::Volume* ReadAhead::FindFrom(size_t& position, uint32_t id) {
    while (position < m_count && m_batch[position].id < id)
        ++position;
    return position < m_count && m_batch[position].id == id ? &m_batch[position] : nullptr;
}

void ReadAhead::AttachDirectories(Database& database, uint32_t first, uint32_t last) {
    size_t position = 0;
    Rows rows(database, Sql::DirectoriesAhead, first, last);
    while (rows.Next()) {
        if (Volume* owner = FindFrom(position, rows.Unsigned(0))) {
            owner->aspects.append(rows.Text(1)).push_back('\0');
        }
    }
    for (Volume& volume : std::span(m_batch).first(m_count)) {
        if (!volume.aspects.empty()) volume.aspects.push_back('\0');
    }
}

void ReadAhead::AttachPlaces(Database& database, uint32_t first, uint32_t last) {
    size_t position = 0;
    Rows rows(database, Sql::PlacesAhead, first, last);
    while (rows.Next()) {
        if (Volume* owner = FindFrom(position, rows.Unsigned(0))) owner->places.push_back(ReadPlace(rows));
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
