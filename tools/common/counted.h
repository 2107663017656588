// A number with what it counts: "1 jukebox", "2 jukeboxes".
#pragma once

#include <cstdint>
#include <string>

namespace embedded::tools {

inline std::string Counted(int64_t number, const char* one, const char* many) {
    return std::to_string(number) + " " + (number == 1 ? one : many);
}
inline std::string CountedJukeboxes(size_t number) {
    return Counted(static_cast<int64_t>(number), "jukebox", "jukeboxes");
}
inline std::string CountedVolumes(size_t number) {
    return Counted(static_cast<int64_t>(number), "volume", "volumes");
}

}  // namespace embedded::tools
