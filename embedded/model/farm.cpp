#include "embedded/model/farm.h"

#include <unordered_map>

namespace embedded {
namespace {

struct Reach {
    int64_t sides = 0;
    int64_t reached = 0;
};

void CountSides(const std::vector<FarmMedium>& media, bool isReached,
                std::unordered_map<int32_t, Reach>& reach) {
    for (const FarmMedium& medium : media) {
        for (const FarmSide& side : medium.sides) {
            if (side.volume == 0) continue;
            Reach& volume = reach[side.volume];
            ++volume.sides;
            if (isReached) ++volume.reached;
        }
    }
}

}  // namespace

VolumeState UsualState(VolumeType type, bool enabled, int64_t sides, int64_t reached) {
    const bool isOnline = reached > 0 && (type == VolumeType::Mirror || reached == sides);
    if (!isOnline) return VolumeState::Offline;
    return enabled ? VolumeState::Active : VolumeState::Disabled;
}

std::map<int32_t, VolumeState> UsualStates(const Farm& farm) {
    std::unordered_map<int32_t, Reach> reach;
    for (const FarmJukebox& jukebox : farm.jukeboxes) {
        for (const FarmMagazine& magazine : jukebox.magazines)
            CountSides(magazine.media, magazine.present, reach);
        CountSides(jukebox.waiting, false, reach);
        CountSides(jukebox.exported, false, reach);
    }
    CountSides(farm.shelf, false, reach);
    std::map<int32_t, VolumeState> states;
    for (const FarmVolume& volume : farm.volumes) {
        const Reach& found = reach[volume.id];
        states[volume.id] = UsualState(volume.type, volume.enabled, found.sides, found.reached);
    }
    return states;
}

void DropUsualStates(Farm& farm) {
    const std::map<int32_t, VolumeState> usual = UsualStates(farm);
    for (FarmVolume& volume : farm.volumes) {
        if (volume.state == static_cast<int32_t>(usual.at(volume.id))) volume.state.reset();
    }
}

}  // namespace embedded
