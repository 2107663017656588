#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "krvcmd/service/krv_sdk.h"

namespace krvcmd {

// A jukebox as lookups return it: the key it was asked with (so its ID) and what the library said.
struct JukeboxInfo {
    JukeboxKey key{};
    JukeboxRecord record{};
};

// A volume as lookups return it.
struct VolumeInfo {
    std::int32_t volumeId = -1;
    VolumeRecord record{};
    // The volume's directory names; the first one is what a query shows.
    std::vector<std::string> aspects;
};

}  // namespace krvcmd
