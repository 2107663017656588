#include "embedded/remote/client/ahead_cache.h"

#include <utility>

namespace embedded::remote {

size_t AheadCache::Hash::operator()(const Numbers& numbers) const {
    constexpr uint64_t kFactor = 0x9E3779B97F4A7C15U;
    uint64_t hash = 0;
    const auto add = [&hash](int32_t number) {
        hash = (hash ^ static_cast<uint32_t>(number)) * kFactor;
        hash ^= hash >> 32U;
    };
    add(std::get<0>(numbers));
    add(std::get<1>(numbers));
    add(std::get<2>(numbers));
    add(std::get<3>(numbers));
    return hash;
}

template <typename Item>
void AheadCache::Fill(Index& index, const std::vector<Item>& items) {
    index.clear();
    index.reserve(items.size());
    for (size_t position = 0; position < items.size(); ++position)
        index.emplace(NumbersOf(items[position].key), position);
}

template <typename Item, typename Key>
const Item* AheadCache::Look(const Index& index, const std::vector<Item>& items, const Key& key) {
    if (items.empty()) return nullptr;
    const auto found = index.find(NumbersOf(key));
    return found == index.end() ? nullptr : &items[found->second];
}

void AheadCache::Keep(Ahead ahead, std::chrono::steady_clock::time_point asked) {
    m_ahead = std::move(ahead);
    Fill(m_jukeboxes, m_ahead.jukeboxes);
    Fill(m_magazines, m_ahead.magazines);
    Fill(m_drives, m_ahead.drives);
    Fill(m_slots, m_ahead.slots);
    Fill(m_sides, m_ahead.sides);
    m_volumes.clear();
    m_volumes.reserve(m_ahead.volumes.size());
    for (size_t position = 0; position < m_ahead.volumes.size(); ++position)
        m_volumes.emplace(m_ahead.volumes[position].id, position);
    m_lastVolume = 0;
    m_time = asked;
}

void AheadCache::Forget() {
    m_ahead = {};
    m_volumes.clear();
}

void AheadCache::ForgetWhenOld() {
    if (std::chrono::steady_clock::now() - m_time >= kLongestUse) Forget();
}

const JukeboxRecord* AheadCache::Find(const JukeboxKey& key) const {
    const auto* const found = Look(m_jukeboxes, m_ahead.jukeboxes, key);
    return found == nullptr ? nullptr : &found->record;
}

const MagazineRecord* AheadCache::Find(const MagazineKey& key) const {
    const auto* const found = Look(m_magazines, m_ahead.magazines, key);
    return found == nullptr ? nullptr : &found->record;
}

const DriveRecord* AheadCache::Find(const DriveKey& key) const {
    const auto* const found = Look(m_drives, m_ahead.drives, key);
    return found == nullptr ? nullptr : &found->record;
}

const SlotRecord* AheadCache::Find(const SlotKey& key) const {
    const auto* const found = Look(m_slots, m_ahead.slots, key);
    return found == nullptr ? nullptr : &found->record;
}

const AheadSide* AheadCache::Find(const SideKey& key) const {
    return Look(m_sides, m_ahead.sides, key);
}

// Most calls are for the volume of the call before, or for the next one.
size_t AheadCache::PositionOf(uint32_t volume) {
    const std::vector<AheadVolume>& volumes = m_ahead.volumes;
    if (m_lastVolume < volumes.size() && volumes[m_lastVolume].id == volume) return m_lastVolume;
    const auto found = m_volumes.find(volume);
    if (found == m_volumes.end()) return volumes.size();
    m_lastVolume = found->second;
    return m_lastVolume;
}

const AheadVolume* AheadCache::FindVolume(uint32_t id) {
    const size_t position = PositionOf(id);
    return position < m_ahead.volumes.size() ? &m_ahead.volumes[position] : nullptr;
}

std::optional<uint32_t> AheadCache::FindVolumeAfter(uint32_t previous) {
    if (!m_ahead.areVolumesInRow) return std::nullopt;
    const size_t next = PositionOf(previous) + 1;
    if (next < m_ahead.volumes.size()) {
        m_lastVolume = next;
        return m_ahead.volumes[next].id;
    }
    if (next == m_ahead.volumes.size() && m_ahead.isEndOfRow) return 0;
    return std::nullopt;
}

std::optional<uint32_t> AheadCache::LastVolumeOfRow(uint32_t first) const {
    const std::vector<AheadVolume>& volumes = m_ahead.volumes;
    if (!m_ahead.areVolumesInRow || m_ahead.isEndOfRow || volumes.empty()) return std::nullopt;
    if (volumes.front().id != first) return std::nullopt;
    return volumes.back().id;
}

}  // namespace embedded::remote
