#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvfake {

// What is wrong with the things that a caller handed in; one sentence each.
using Complaints = std::vector<std::string>;

// The context has to be freshly built. `expectedSession` is the session that is open, 0 for none.
void CheckContext(const KrvCallContext& context, KrvSession expectedSession, Complaints& complaints);

// The size of a key record.
template <typename Key>
void CheckKey(const Key* key, Complaints& complaints) {
    if (key == nullptr) {
        complaints.emplace_back("the key is null");
    } else if (key->size != sizeof(Key)) {
        complaints.push_back("key.size is " + std::to_string(key->size) + ", not " +
                             std::to_string(sizeof(Key)));
    }
}

// Every record has a size and presets that the caller must have filled in before the call.
void CheckPresets(const JukeboxRecord& record, Complaints& complaints);
void CheckPresets(const MagazineRecord& record, Complaints& complaints);
void CheckPresets(const DriveRecord& record, Complaints& complaints);
void CheckPresets(const SlotRecord& record, Complaints& complaints);
void CheckPresets(const SideRecord& record, Complaints& complaints);
void CheckPresets(const VolumeRecord& record, Complaints& complaints);

// An element of the array that KrvVolumeLocations fills.
void CheckLocationPresets(const SideKey* locations, uint32_t room, Complaints& complaints);

void CheckFormatOptions(const FormatOptions& options, Complaints& complaints);

// A complaint that names the value unless it is the expected one.
void Expect(int64_t value, int64_t expected, const char* what, Complaints& complaints);

}  // namespace krvfake
