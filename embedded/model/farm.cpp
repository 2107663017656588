#include "embedded/model/farm.h"

#include <unordered_map>

namespace embedded {
namespace {

struct Reach {
    int sides = 0;
    int reached = 0;  // in slots of present magazines
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
        const bool isOnline =
            found.reached > 0 && (volume.type == VolumeType::Mirror || found.reached == found.sides);
        VolumeState state = VolumeState::Offline;
        if (isOnline) state = volume.enabled ? VolumeState::Active : VolumeState::Disabled;
        states[volume.id] = state;
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
