#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// The text in a fixed-width field of a record: up to its first NUL, or the whole field when there is none.
template <size_t N>
inline std::string_view RecordText(const char (&field)[N]) {
    const void* end = std::memchr(field, '\0', N);
    return {field, end == nullptr ? N : static_cast<size_t>(static_cast<const char*>(end) - field)};
}

// A jukebox as lookups return it: the key it was asked with (so its ID) and what the library said.
struct JukeboxInfo {
    JukeboxKey key{};
    JukeboxRecord record{};
};

// A volume as lookups return it.
struct VolumeInfo {
    int32_t volumeId = -1;
    VolumeRecord record{};
    // The volume's directory names; the first one is what a query shows.
    std::vector<std::string> aspects;
};

}  // namespace krvcmd
