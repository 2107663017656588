#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/service/sdk/codes.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvfake {

// What the fake library answers from: a farm of jukeboxes and volumes in memory. All numbers are
// the library's own, so magazines, slots, drives and sides count from 0.
//
// Any value may be nonsense: counts may be negative or larger than what is there, and a text that
// is as long as its field (or longer) fills the field to its last byte, without a NUL.
//
//     Farm farm;
//     farm.AddJukebox(8, "Tower").WithDrive({"OSTREL", "J-200", "3404", {0, 4, 1}}).WithMagazine(10);
//     farm.AddVolume(33, "Sales 2005").WithMedium(5).At(8, 0, 1, kSideA);

using krvcmd::kNoMedium;
using krvcmd::kSideA;
using krvcmd::kSideB;
namespace slot_state = krvcmd::slot_state;
namespace side_state = krvcmd::side_state;

// Who a changer or a drive is.
struct Device {
    std::string vendor;
    std::string product;
    std::string revision;
    std::array<int32_t, 3> scsi{};
};

struct Drive {
    Device device;
    bool enabled = true;
};

// One side as KrvGetSide answers it. A side that nobody describes is not present.
struct Side {
    uint32_t state = side_state::kNotPresent;
    uint32_t mediumCode = kNoMedium;
    uint32_t finalization = 0;
    int32_t volumeId = 0;
};

// One slot as KrvGetSlot answers it, with its two sides. A slot that nobody describes is empty.
struct Slot {
    uint32_t state = slot_state::kEmpty;
    uint32_t mediumCode = kNoMedium;
    std::array<Side, 2> sides{};
};

struct Magazine {
    int32_t slotCount = 0;
    bool present = true;
    Slot otherSlots;                // what every slot is that has no entry in `slots`
    std::map<int32_t, Slot> slots;  // by slot number
};

struct Jukebox {
    int32_t id = 0;
    std::string name;
    Device changer;
    bool enabled = true;
    bool doubleSided = false;
    std::vector<Drive> drives;
    std::vector<Magazine> magazines;
    // What the jukebox says of itself; follows the builder below, may be overwritten.
    int32_t claimedDrives = 0;
    int32_t claimedMagazines = 0;
    int32_t claimedSlots = 0;

    Jukebox& WithChanger(Device device);
    Jukebox& Disabled();
    Jukebox& DoubleSided();
    Jukebox& WithDrive(Device device, bool driveEnabled = true);
    Jukebox& WithMagazine(int32_t slotCount, Slot otherSlots = {});
    Jukebox& WithMissingMagazine(int32_t slotCount);
    // Describes one slot of a magazine that is already there.
    Jukebox& WithSlot(int32_t magazine, int32_t slot, uint32_t state, uint32_t mediumCode = kNoMedium);
    Jukebox& WithSide(int32_t magazine, int32_t slot, int32_t side, Side contents);

    // The slot's own entry, made when it has none.
    Slot& SlotEntry(int32_t magazine, int32_t slot);
};

class Farm;

struct Volume {
    Farm* farm = nullptr;
    int32_t id = 0;
    uint32_t type = 0;
    uint32_t state = 0;
    std::string fileSystem = "UDF";
    std::string label;
    uint64_t totalCapacity = 0;
    uint64_t freeCapacity = 0;
    uint32_t mediumCode = 5;
    std::vector<std::string> directories;
    std::vector<SideKey> locations;

    // Hostile answers; empty: the truth.
    std::string aspectBytes;               // the buffer's contents instead of the directories
    std::vector<uint32_t> aspectSizes;     // required sizes of the 1st, 2nd ... call; the last one stays
    std::vector<uint32_t> locationCounts;  // counts of the 1st, 2nd ... call; the last one stays
    size_t aspectCalls = 0;
    size_t locationCalls = 0;

    Volume& WithType(uint32_t value);
    Volume& InState(uint32_t value);
    Volume& WithFileSystem(std::string_view name);
    Volume& WithCapacity(uint64_t total, uint64_t free);
    Volume& WithDirectory(std::string_view path);
    // The medium code that the slot and the side get by `At`, so it has to be set first.
    Volume& WithMedium(uint32_t code);
    // Puts the volume onto a side (the slot becomes full, the side carries this volume) and adds
    // the location.
    Volume& At(int32_t jukebox, int32_t magazine, int32_t slot, int32_t side);
    // Adds a location of which the jukebox knows nothing.
    Volume& SaysItIsAt(int32_t jukebox, int32_t magazine, int32_t slot, int32_t side);
};

class Farm {
  public:
    Farm() = default;
    Farm(const Farm&) = delete;
    Farm& operator=(const Farm&) = delete;

    // Enumerated in the order of adding. The references stay valid as long as the farm.
    Jukebox& AddJukebox(int32_t id, std::string_view name);
    Volume& AddVolume(int32_t id, std::string_view label);

    // Null when there is none. The first one wins when an ID was added twice.
    Jukebox* FindJukebox(int32_t id);
    Volume* FindVolume(int32_t id);

    // The IDs that an enumeration yields instead of the added ones: the n-th step after a start
    // (previous ID 0) yields the n-th of them; after the last one it ends, or repeats it for ever.
    struct Enumeration {
        std::vector<int32_t> ids;
        bool endless = false;
        size_t step = 0;
    };
    void EnumerateJukeboxes(std::vector<int32_t> ids, bool endless = false);
    void EnumerateVolumes(std::vector<int32_t> ids, bool endless = false);

    uint32_t NextJukebox(uint32_t previous);
    uint32_t NextVolume(uint32_t previous);

    void Clear();

  private:
    std::deque<Jukebox> m_jukeboxes;
    std::deque<Volume> m_volumes;
    std::map<int32_t, size_t> m_jukeboxIndex;
    std::map<int32_t, size_t> m_volumeIndex;
    Enumeration m_jukeboxEnumeration;
    Enumeration m_volumeEnumeration;
};

}  // namespace krvfake
