#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "embedded/remote/protocol/ahead.h"

namespace embedded::remote {

// Items as the other side has read them ahead.
template <typename Item>
class AheadItems {
  public:
    AheadItems() = default;
    explicit AheadItems(std::vector<Item> items) : m_items(std::move(items)) {}

    const std::vector<Item>& Get() const { return m_items; }

    // The position of the item with this key; the number of items when there is none.
    template <typename Key>
    size_t Find(const Key& key);

  private:
    template <typename Key>
    size_t Search(const Key& key);

    std::vector<Item> m_items;
    size_t m_last = 0;            // the position that was found last
    std::vector<size_t> m_order;  // all positions by the keys of their items; filled by the first search
};

// The answers that the other side has read ahead, all of one view of the farm. They are those of single calls
// at the time of that view, and are forgotten kLongestUse after they were asked for.
class AheadCache {
  public:
    static constexpr std::chrono::seconds kLongestUse{5};

    // Replaces what was there.
    void Keep(Ahead ahead, std::chrono::steady_clock::time_point asked);
    void Forget();
    void ForgetWhenOld();

    // Each is null or nothing for what was not read ahead.
    const JukeboxRecord* Find(const JukeboxKey& key);
    const MagazineRecord* Find(const MagazineKey& key);
    const DriveRecord* Find(const DriveKey& key);
    const SlotRecord* Find(const SlotKey& key);
    const AheadSide* Find(const SideKey& key);
    const AheadVolume* FindVolume(uint32_t id);
    // 0 when no volume follows.
    std::optional<uint32_t> FindVolumeAfter(uint32_t previous);
    // The last volume of the row that begins with this one and goes on behind its end.
    std::optional<uint32_t> LastVolumeOfRow(uint32_t first) const;

  private:
    AheadItems<Described<JukeboxKey, JukeboxRecord>> m_jukeboxes;
    AheadItems<Described<MagazineKey, MagazineRecord>> m_magazines;
    AheadItems<Described<DriveKey, DriveRecord>> m_drives;
    AheadItems<Described<SlotKey, SlotRecord>> m_slots;
    AheadItems<AheadSide> m_sides;
    AheadItems<AheadVolume> m_volumes;
    bool m_areVolumesInRow = false;
    bool m_isEndOfRow = false;
    std::chrono::steady_clock::time_point m_time;
};

}  // namespace embedded::remote
