#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/service/sdk/codes.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// The text in a fixed-width field of a record: up to its first NUL, or the whole field when there is none.
template <size_t N>
inline std::string_view RecordText(const char (&field)[N]) {
    const void* end = std::memchr(field, '\0', N);
    return {field, end == nullptr ? N : static_cast<size_t>(static_cast<const char*>(end) - field)};
}

// Puts a record into the state that the library expects before it fills the record.

inline void Preset(JukeboxRecord& record) {
    record = {};
    record.size = sizeof(JukeboxRecord);
    record.driveCount = -1;
    record.magazineCount = -1;
}

inline void Preset(MagazineRecord& record) {
    record = {};
    record.size = sizeof(MagazineRecord);
    record.slotCount = -1;
}

inline void Preset(DriveRecord& record) {
    record = {};
    record.size = sizeof(DriveRecord);
}

inline void Preset(SlotRecord& record) {
    record = {};
    record.size = sizeof(SlotRecord);
    record.mediumCode = kUnknownMedium;
}

inline void Preset(SideRecord& record) {
    record = {};
    record.size = sizeof(SideRecord);
    record.mediumCode = kUnknownMedium;
    record.volumeId = -1;
}

inline void Preset(VolumeRecord& record) {
    record = {};
    record.size = sizeof(VolumeRecord);
    record.libraryValue1 = -1;
}

inline void Preset(FormatOptions& options) {
    options = {};
    options.size = sizeof(FormatOptions);
}

// A jukebox as look-ups return it: the key it was asked with (so its ID) and what the library said.
struct JukeboxInfo {
    JukeboxKey key{};
    JukeboxRecord record{};
};

// A volume as look-ups return it.
struct VolumeInfo {
    int32_t volumeId = -1;
    VolumeRecord record{};
    // The volume's directory names; the first one is what a query shows.
    std::vector<std::string> aspects;
};

}  // namespace krvcmd
