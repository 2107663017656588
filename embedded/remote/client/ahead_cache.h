#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "embedded/remote/protocol/ahead.h"

namespace embedded::remote {

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
    const JukeboxRecord* Find(const JukeboxKey& key) const;
    const MagazineRecord* Find(const MagazineKey& key) const;
    const DriveRecord* Find(const DriveKey& key) const;
    const SlotRecord* Find(const SlotKey& key) const;
    const AheadSide* Find(const SideKey& key) const;
    const AheadVolume* FindVolume(uint32_t id);
    // 0 when no volume follows.
    std::optional<uint32_t> FindVolumeAfter(uint32_t previous);
    // The last volume of the row that begins with this one and goes on behind its end.
    std::optional<uint32_t> LastVolumeOfRow(uint32_t first) const;

  private:
    // Where the items of each kind are in m_ahead, by the numbers of their keys.
    using Numbers = std::tuple<int32_t, int32_t, int32_t, int32_t>;
    struct Hash {
        size_t operator()(const Numbers& numbers) const;
    };
    using Index = std::unordered_map<Numbers, size_t, Hash>;

    static Numbers NumbersOf(const JukeboxKey& key) { return {key.jukeboxId, 0, 0, 0}; }
    static Numbers NumbersOf(const MagazineKey& key) { return {key.jukeboxId, key.magazine, 0, 0}; }
    static Numbers NumbersOf(const DriveKey& key) { return {key.jukeboxId, key.drive, 0, 0}; }
    static Numbers NumbersOf(const SlotKey& key) { return {key.jukeboxId, key.magazine, key.slot, 0}; }
    static Numbers NumbersOf(const SideKey& key) { return {key.jukeboxId, key.magazine, key.slot, key.side}; }

    template <typename Item>
    static void Fill(Index& index, const std::vector<Item>& items);
    template <typename Item, typename Key>
    static const Item* Look(const Index& index, const std::vector<Item>& items, const Key& key);
    size_t PositionOf(uint32_t volume);

    Ahead m_ahead;
    Index m_jukeboxes;
    Index m_magazines;
    Index m_drives;
    Index m_slots;
    Index m_sides;
    std::unordered_map<uint32_t, size_t> m_volumes;
    size_t m_lastVolume = 0;  // the position of the volume that was asked for last
    std::chrono::steady_clock::time_point m_time;
};

}  // namespace embedded::remote
