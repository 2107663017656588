#include "embedded/remote/serve/ahead_reader.h"

#include <algorithm>
#include <set>
#include <utility>

#include "embedded/catalogue/records.h"
#include "embedded/model/refusal.h"

namespace embedded::remote {
namespace {

// Of a jukebox, at most so many magazines and drives are read ahead.
constexpr int32_t kMostParts = 1024;

// Every item is described once.
class Collector {
  public:
    explicit Collector(const View& view) : m_view(view) {}

    Ahead Take() { return std::move(m_ahead); }

    void AddJukebox(int32_t jukebox) {
        if (!m_jukeboxes.insert(jukebox).second) return;
        const JukeboxKey key{sizeof(JukeboxKey), jukebox};
        m_ahead.jukeboxes.push_back({key, DescribeJukebox(m_view.database, key)});
    }

    // From the first one on: absolute numbers of slots count from there.
    void AddMagazines(int32_t jukebox) {
        AddJukebox(jukebox);
        const int32_t count = m_ahead.jukeboxes.back().record.magazineCount;
        for (int32_t number = 0; number < std::min(count, kMostParts); ++number) {
            if (!AddMagazine({sizeof(MagazineKey), jukebox, number})) break;
        }
    }

    void AddDrives(int32_t jukebox) {
        AddJukebox(jukebox);
        const int32_t count = m_ahead.jukeboxes.back().record.driveCount;
        for (int32_t number = 0; number < std::min(count, kMostParts); ++number) {
            if (!AddDrive({sizeof(DriveKey), jukebox, number})) break;
        }
    }

    void AddRow(uint32_t first, size_t count) {
        m_ahead.areVolumesInRow = true;
        uint32_t id = first;
        while (id != 0 && m_ahead.volumes.size() < count) {
            AddVolume(id);
            id = m_view.ahead.NextVolume(m_view.database, id);
        }
        m_ahead.isEndOfRow = id == 0;
    }

    // False when there is none of that number.
    bool AddMagazine(const MagazineKey& key) {
        if (!m_magazines.insert({key.jukeboxId, key.magazine}).second) return true;
        try {
            m_ahead.magazines.push_back({key, DescribeMagazine(m_view.database, key)});
            return true;
        } catch (const Refusal&) {
            return false;
        }
    }

    bool AddDrive(const DriveKey& key) {
        try {
            m_ahead.drives.push_back({key, DescribeDrive(m_view.database, key)});
            return true;
        } catch (const Refusal&) {
            return false;
        }
    }

    // Also what is in the slot. False when the slot cannot be described.
    bool AddSlot(const SlotKey& key) {
        try {
            m_ahead.slots.push_back({key, DescribeSlot(m_view.database, key)});
        } catch (const Refusal&) {
            return false;
        }
        constexpr uint32_t kFull = 4;
        if (m_ahead.slots.back().record.state != kFull) return true;
        for (const int32_t side : {0, 1}) {
            const SideKey place{sizeof(SideKey), key.jukeboxId, key.magazine, key.slot, side};
            const int32_t volume = AddSide(place);
            if (volume > 0) AddVolume(static_cast<uint32_t>(volume));
        }
        return true;
    }

    // After AddMagazines.
    void AddSlotsFrom(SlotKey key, size_t count) {
        const std::vector<Described<MagazineKey, MagazineRecord>> magazines = m_ahead.magazines;
        for (; static_cast<size_t>(key.magazine) < magazines.size(); ++key.magazine, key.slot = 0) {
            const int32_t slotCount = magazines[static_cast<size_t>(key.magazine)].record.slotCount;
            for (; key.slot < slotCount; ++key.slot) {
                if (m_ahead.slots.size() >= count || !AddSlot(key)) return;
            }
        }
    }

    void AddVolume(uint32_t id) {
        if (!m_volumes.insert(id).second) return;
        AheadVolume volume;
        volume.id = id;
        const ReadAhead::Volume* const known = m_view.ahead.FindVolume(id);
        if (known != nullptr) {
            volume.record = known->record;
            volume.aspects = known->aspects;
            for (const ReadAhead::PlacedSide& placed : known->places)
                volume.places.push_back(placed.place);
        } else {
            volume.record = DescribeVolume(m_view.database, id);
            volume.aspects = DescribeAspects(m_view.database, id);
            volume.places = PlacesOf(id);
        }
        for (const SideKey& place : volume.places) {
            AddJukebox(place.jukeboxId);
            (void)AddMagazine({sizeof(MagazineKey), place.jukeboxId, place.magazine});
            AddSide(place);
        }
        m_ahead.volumes.push_back(std::move(volume));
    }

  private:
    std::vector<SideKey> PlacesOf(uint32_t id) const {
        try {
            return DescribeLocations(m_view.database, id);
        } catch (const Refusal&) {
            return {};  // it has no location
        }
    }

    // The volume on the side; 0 when there is none, or the side cannot be described.
    int32_t AddSide(const SideKey& key) {
        AheadSide side;
        side.key = key;
        try {
            if (const SideRecord* const known = m_view.ahead.FindSide(key)) {
                side.record = *known;
            } else {
                DescribeSide(m_view.database, key, side.record);
            }
        } catch (const Refusal& refusal) {
            if (static_cast<Code>(refusal.GetCode()) != Code::SideUnreadable) return 0;
            side.failure = {refusal.GetCode(), refusal.GetText()};
        }
        m_ahead.sides.push_back(std::move(side));
        return m_ahead.sides.back().record.volumeId;
    }

    const View& m_view;
    Ahead m_ahead;
    std::set<int32_t> m_jukeboxes;
    std::set<std::pair<int32_t, int32_t>> m_magazines;
    std::set<uint32_t> m_volumes;
};

}  // namespace

Ahead ReadAheadOfJukebox(const View& view, int32_t jukebox) {
    Collector collector(view);
    collector.AddMagazines(jukebox);
    collector.AddDrives(jukebox);
    return collector.Take();
}

Ahead ReadAheadOfSlot(const View& view, const SlotKey& slot, size_t count) {
    Collector collector(view);
    collector.AddMagazines(slot.jukeboxId);
    collector.AddSlotsFrom(slot, count);
    return collector.Take();
}

Ahead ReadAheadOfVolume(const View& view, uint32_t volume) {
    Collector collector(view);
    collector.AddVolume(volume);
    return collector.Take();
}

Ahead ReadAheadOfVolumes(const View& view, uint32_t first, size_t count) {
    Collector collector(view);
    collector.AddRow(first, count);
    return collector.Take();
}

}  // namespace embedded::remote
