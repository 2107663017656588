#include "tools/farm_diff/media_matching.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>

namespace embedded::tools {
namespace {

void AddMedia(std::vector<PlacedMedium>& placed, FarmPlace place, const std::vector<FarmMedium>& media) {
    for (const FarmMedium& medium : media) {
        place.slot = place.place == Place::Slot ? medium.slot : place.slot + 1;
        placed.push_back({place, &medium});
    }
}

// The media of both farms, and who belongs to whom so far.
class Matching {
  public:
    Matching(const std::vector<PlacedMedium>& before, const std::vector<PlacedMedium>& after)
        : m_before(before),
          m_after(after),
          m_partnerOfBefore(before.size(), nullptr),
          m_isAfterTaken(after.size(), false) {}

    // Pairs the media without a partner whose keys are equal, in their order. `keyOf` returns the keys of a
    // medium, which may be none.
    template <typename Key, typename KeysOf>
    void PairByKey(const KeysOf& keysOfBefore, const KeysOf& keysOfAfter) {
        std::map<Key, std::deque<size_t>> free;
        for (size_t index = 0; index < m_after.size(); ++index) {
            if (m_isAfterTaken[index]) continue;
            for (Key& key : keysOfAfter(m_after[index]))
                free[std::move(key)].push_back(index);
        }
        for (size_t index = 0; index < m_before.size(); ++index) {
            if (m_partnerOfBefore[index] != nullptr) continue;
            for (const Key& key : keysOfBefore(m_before[index])) {
                if (TakeFirst(free, key, index)) break;
            }
        }
    }

    std::vector<MediumPair> GetPairs() const {
        std::vector<MediumPair> pairs;
        for (size_t index = 0; index < m_before.size(); ++index)
            pairs.push_back({&m_before[index], m_partnerOfBefore[index]});
        for (size_t index = 0; index < m_after.size(); ++index) {
            if (!m_isAfterTaken[index]) pairs.push_back({nullptr, &m_after[index]});
        }
        return pairs;
    }

  private:
    template <typename Key>
    bool TakeFirst(std::map<Key, std::deque<size_t>>& free, const Key& key, size_t before) {
        const auto found = free.find(key);
        if (found == free.end()) return false;
        std::deque<size_t>& queue = found->second;
        while (!queue.empty() && m_isAfterTaken[queue.front()])
            queue.pop_front();
        if (queue.empty()) return false;
        m_isAfterTaken[queue.front()] = true;
        m_partnerOfBefore[before] = &m_after[queue.front()];
        return true;
    }

    const std::vector<PlacedMedium>& m_before;
    const std::vector<PlacedMedium>& m_after;
    std::vector<const PlacedMedium*> m_partnerOfBefore;
    std::vector<bool> m_isAfterTaken;
};

std::unordered_map<int32_t, int64_t> MediaOfVolumes(const std::vector<PlacedMedium>& media) {
    std::unordered_map<int32_t, int64_t> ids;
    for (const PlacedMedium& placed : media) {
        for (const FarmSide& side : placed.medium->sides) {
            if (side.volume > 0 && side.part <= 1) ids.emplace(side.volume, placed.medium->id);
        }
    }
    return ids;
}

// Whether the IDs of both farms mean the same media: no volume is on media with different ones.
bool DoIdsAgree(const std::vector<PlacedMedium>& before, const std::vector<PlacedMedium>& after) {
    const auto idsAfter = MediaOfVolumes(after);
    return std::ranges::all_of(MediaOfVolumes(before), [&](const auto& entry) {
        const auto found = idsAfter.find(entry.first);
        return found == idsAfter.end() || (found->second != 0 && found->second == entry.second);
    });
}

// Type and number of sides, which no call changes.
std::string BuildOf(const FarmMedium& medium) {
    return std::to_string(medium.type) + "/" + std::to_string(medium.sides.size());
}

std::string LookOf(const FarmMedium& medium, const VolumesById& volumes) {
    std::string look = BuildOf(medium);
    for (const FarmSide& side : medium.sides) {
        look += "/" + std::to_string(static_cast<int32_t>(side.content));
        const auto volume = volumes.find(side.volume);
        if (volume != volumes.end()) look += "/" + volume->second->label;
    }
    return look;
}

}  // namespace

VolumesById VolumesOf(const Farm& farm) {
    VolumesById volumes;
    for (const FarmVolume& volume : farm.volumes)
        volumes.emplace(volume.id, &volume);
    return volumes;
}

std::vector<PlacedMedium> PlacedMedia(const Farm& farm) {
    std::vector<PlacedMedium> placed;
    for (const FarmJukebox& jukebox : farm.jukeboxes) {
        int32_t number = 0;
        for (const FarmMagazine& magazine : jukebox.magazines)
            AddMedia(placed, {Place::Slot, jukebox.id, ++number, 0}, magazine.media);
        AddMedia(placed, {Place::ImportStation, jukebox.id, 0, 0}, jukebox.waiting);
        AddMedia(placed, {Place::ExportStation, jukebox.id, 0, 0}, jukebox.exported);
    }
    AddMedia(placed, {Place::Shelf, 0, 0, 0}, farm.shelf);
    return placed;
}

std::vector<MediumPair> MatchMedia(const Farm& farmBefore, const std::vector<PlacedMedium>& before,
                                   const Farm& farmAfter, const std::vector<PlacedMedium>& after) {
    Matching matching(before, after);
    using Strings = std::vector<std::string>;
    using KeysOf = std::function<Strings(const PlacedMedium&)>;
    if (DoIdsAgree(before, after)) {
        const KeysOf byId = [](const PlacedMedium& placed) {
            const int64_t id = placed.medium->id;
            return id == 0 ? Strings() : Strings{BuildOf(*placed.medium) + "/" + std::to_string(id)};
        };
        matching.PairByKey<std::string>(byId, byId);
    }
    using Numbers = std::vector<int32_t>;
    using NumbersOf = std::function<Numbers(const PlacedMedium&)>;
    const NumbersOf byVolume = [](const PlacedMedium& placed) {
        Numbers volumes;
        for (const FarmSide& side : placed.medium->sides) {
            if (side.volume > 0) volumes.push_back(side.volume);
        }
        return volumes;
    };
    matching.PairByKey<int32_t>(byVolume, byVolume);
    using Place = std::pair<FarmPlace, std::string>;
    using PlacesOf = std::function<std::vector<Place>(const PlacedMedium&)>;
    const PlacesOf byPlace = [](const PlacedMedium& placed) {
        return std::vector<Place>{{placed.place, BuildOf(*placed.medium)}};
    };
    matching.PairByKey<Place>(byPlace, byPlace);
    const auto byLook = [](const Farm& farm) -> KeysOf {
        return [volumes = VolumesOf(farm)](const PlacedMedium& placed) {
            return Strings{LookOf(*placed.medium, volumes)};
        };
    };
    matching.PairByKey<std::string>(byLook(farmBefore), byLook(farmAfter));
    return matching.GetPairs();
}

}  // namespace embedded::tools
