#include "embedded/remote/client/ahead_cache.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace embedded::remote {
namespace {

auto NumbersOf(uint32_t volume) {
    return std::tuple(volume);
}
auto NumbersOf(const JukeboxKey& key) {
    return std::tuple(key.jukeboxId);
}
auto NumbersOf(const MagazineKey& key) {
    return std::tuple(key.jukeboxId, key.magazine);
}
auto NumbersOf(const DriveKey& key) {
    return std::tuple(key.jukeboxId, key.drive);
}
auto NumbersOf(const SlotKey& key) {
    return std::tuple(key.jukeboxId, key.magazine, key.slot);
}
auto NumbersOf(const SideKey& key) {
    return std::tuple(key.jukeboxId, key.magazine, key.slot, key.side);
}

template <typename Item>
const auto& KeyOf(const Item& item) {
    return item.key;
}
const uint32_t& KeyOf(const AheadVolume& volume) {
    return volume.id;
}

template <typename Item, typename Key>
const Item* FindItem(AheadItems<Item>& items, const Key& key) {
    const size_t position = items.Find(key);
    return position < items.Get().size() ? &items.Get()[position] : nullptr;
}

template <typename Key, typename Record>
const Record* FindRecord(AheadItems<Described<Key, Record>>& items, const Key& key) {
    const auto* const found = FindItem(items, key);
    return found == nullptr ? nullptr : &found->record;
}

}  // namespace

// Walks take items in the order in which they were read, and may leave a few out.
template <typename Item>
template <typename Key>
size_t AheadItems<Item>::Find(const Key& key) {
    constexpr size_t kNear = 4;
    const size_t end = std::min(m_last + kNear, m_items.size());
    for (size_t position = m_last; position < end; ++position) {
        if (NumbersOf(KeyOf(m_items[position])) == NumbersOf(key)) return m_last = position;
    }
    const size_t position = Search(key);
    if (position < m_items.size()) m_last = position;
    return position;
}

template <typename Item>
template <typename Key>
size_t AheadItems<Item>::Search(const Key& key) {
    const auto numbersAt = [this](size_t position) { return NumbersOf(KeyOf(m_items[position])); };
    if (m_order.empty()) {
        for (size_t position = 0; position < m_items.size(); ++position)
            m_order.push_back(position);
        std::ranges::sort(m_order, {}, numbersAt);
    }
    const auto found = std::ranges::lower_bound(m_order, NumbersOf(key), {}, numbersAt);
    return found != m_order.end() && numbersAt(*found) == NumbersOf(key) ? *found : m_items.size();
}

void AheadCache::Keep(Ahead ahead, std::chrono::steady_clock::time_point asked) {
    m_jukeboxes = AheadItems(std::move(ahead.jukeboxes));
    m_magazines = AheadItems(std::move(ahead.magazines));
    m_drives = AheadItems(std::move(ahead.drives));
    m_slots = AheadItems(std::move(ahead.slots));
    m_sides = AheadItems(std::move(ahead.sides));
    m_volumes = AheadItems(std::move(ahead.volumes));
    m_areVolumesInRow = ahead.areVolumesInRow;
    m_isEndOfRow = ahead.isEndOfRow;
    m_time = asked;
}

void AheadCache::Forget() {
    Keep({}, m_time);
}

void AheadCache::ForgetWhenOld() {
    if (std::chrono::steady_clock::now() - m_time >= kLongestUse) Forget();
}

const JukeboxRecord* AheadCache::Find(const JukeboxKey& key) {
    return FindRecord(m_jukeboxes, key);
}

const MagazineRecord* AheadCache::Find(const MagazineKey& key) {
    return FindRecord(m_magazines, key);
}

const DriveRecord* AheadCache::Find(const DriveKey& key) {
    return FindRecord(m_drives, key);
}

const SlotRecord* AheadCache::Find(const SlotKey& key) {
    return FindRecord(m_slots, key);
}

const AheadSide* AheadCache::Find(const SideKey& key) {
    return FindItem(m_sides, key);
}

const AheadVolume* AheadCache::FindVolume(uint32_t id) {
    return FindItem(m_volumes, id);
}

std::optional<uint32_t> AheadCache::FindVolumeAfter(uint32_t previous) {
    if (!m_areVolumesInRow) return std::nullopt;
    const std::vector<AheadVolume>& volumes = m_volumes.Get();
    const size_t next = m_volumes.Find(previous) + 1;
    if (next < volumes.size()) return volumes[next].id;
    if (next == volumes.size() && m_isEndOfRow) return 0;
    return std::nullopt;
}

std::optional<uint32_t> AheadCache::LastVolumeOfRow(uint32_t first) const {
    const std::vector<AheadVolume>& volumes = m_volumes.Get();
    if (!m_areVolumesInRow || m_isEndOfRow || volumes.empty()) return std::nullopt;
    if (volumes.front().id != first) return std::nullopt;
    return volumes.back().id;
}

}  // namespace embedded::remote
