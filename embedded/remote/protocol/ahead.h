#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/remote/protocol/cbor.h"
#include "embedded/remote/protocol/messages.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded::remote {

// What the server's side has read ahead, all of it in one view of the farm: the answers of calls that were
// not made yet.

template <typename Key, typename Record>
struct Described {
    Key key{};
    Record record{};
};

struct AheadSide {
    SideKey key{};
    SideRecord record{};
    std::optional<Failure> failure;  // the record is filled all the same
};

struct AheadVolume {
    uint32_t id = 0;
    VolumeRecord record{};
    std::string aspects;  // as KrvVolumeAspects returns them
    std::vector<SideKey> places;
};

struct Ahead {
    std::vector<Described<JukeboxKey, JukeboxRecord>> jukeboxes;
    std::vector<Described<MagazineKey, MagazineRecord>> magazines;
    std::vector<Described<DriveKey, DriveRecord>> drives;
    std::vector<Described<SlotKey, SlotRecord>> slots;
    std::vector<AheadSide> sides;
    std::vector<AheadVolume> volumes;
    // The volumes follow each other as KrvGetNextVolume returns them.
    bool areVolumesInRow = false;
    // No volume follows the last one of the row.
    bool isEndOfRow = false;
};

json ToMessage(const Ahead& ahead);
Ahead AheadFrom(const json& message);

}  // namespace embedded::remote
