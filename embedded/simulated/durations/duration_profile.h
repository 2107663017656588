#pragma once

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/layout/layout_reader.h"

namespace embedded {

using Seconds = std::chrono::duration<double>;

// How long a drive takes with a medium. "Per GB" is for each 10^9 bytes of a side.
struct DriveDurations {
    Seconds spinUp{0};
    Seconds read{0};        // what is needed to know the volumes of a side
    Seconds formatDisc{0};  // writing an empty file system
    Seconds formatPerGb{0};
    Seconds certifyPerGb{0};  // checking the surface, in addition to a format
    Seconds finalize{0};
    Seconds finalizePerGb{0};
    Seconds erase{0};
    Seconds erasePerGb{0};
};

// How long a jukebox takes for what its mechanics do. docs/durations.md describes the file.
struct DurationProfile {
    std::string name;
    Seconds move{0};         // the robot carries a medium from one place to another
    Seconds movePerSlot{0};  // in addition for each slot before the one that it moves from or to
    Seconds turn{0};         // the robot turns a medium over
    Seconds load{0};         // a drive takes a medium in
    Seconds unload{0};       // a drive stops a medium and gives it back
    DriveDurations drive;    // for types without durations of their own
    std::map<uint32_t, DriveDurations> media;

    const DriveDurations& Of(uint32_t type) const;
};

struct ProfileResult {
    DurationProfile profile;  // complete only without problems
    std::vector<Problem> problems;
};

// Reads a profile, a TOML text. Every duration is a number of seconds from 0 to 10,000,000.
ProfileResult ReadDurationProfile(std::string_view text);

// The profiles that jukeboxes have by default, by their number of slots.
inline constexpr int64_t kMostSlotsOfSmallJukebox = 100;
const DurationProfile& DefaultProfile(int64_t slots);

// The files of both.
std::string_view SmallProfileText();
std::string_view LargeProfileText();

}  // namespace embedded
