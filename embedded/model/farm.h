#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace embedded {

// A farm as plain data: what a layout file says, and what a farm's database holds. Numbers of magazines,
// slots and drives are one-based here, as in a layout file.

// What is on one side of a medium, and how far it is closed; the values are those of the side record.
enum class Content : int32_t { Bad = 3, Blank = 4, NoFileSystem = 5, FileSystem = 6 };
enum class Finalization : int32_t { Unknown = 0, NotFinalized = 1, Finalized = 2, Closed = 3 };

// The values of the slot record.
enum class SlotState : int32_t { Unknown = 0, NotPresent = 1, ScanFailed = 2, Empty = 3, Full = 4 };

// The values of the volume record.
enum class VolumeType : int32_t { Disc = 0, Mirror = 1, VolumeSet = 2 };
enum class VolumeState : int32_t { Active = 0, Disabled = 1, Offline = 2, Unknown = 3 };

// Where a medium is; the values are those of the database.
enum class Place : int32_t { Slot = 1, ImportStation = 2, ExportStation = 3, Shelf = 4 };

struct FarmDevice {
    std::string vendor;    // at most 8 bytes
    std::string product;   // at most 16 bytes
    std::string revision;  // at most 4 bytes
    int32_t scsi[3] = {0, 0, 0};
};

struct FarmSide {
    Content content = Content::Blank;
    Finalization finalization = Finalization::NotFinalized;
    bool sequential = false;  // the file system is a sequential one
    // 0 = none; below 0 = a volume that the service has never seen
    int32_t volume = 0;
    // the order of a volume's sides; 0 for a volume on one side
    int32_t part = 0;
};

struct FarmMedium {
    int64_t id = 0;    // in the database that it was read from, 0 = none; two farms may use different ones
    int32_t slot = 0;  // only for media in magazines
    uint32_t type = 0;
    std::vector<FarmSide> sides;  // one or two
    int line = 0;                 // of the layout file, 0 = unknown
};

struct FarmDrive {
    FarmDevice device;
    bool enabled = true;
    uint64_t values[2] = {0, 0};  // the library's own
};

struct FarmSlot {
    int32_t number = 0;
    SlotState state = SlotState::Empty;
};

struct FarmMagazine {
    int32_t slotCount = 0;
    bool present = true;
    // slots whose state differs from what the media say: full with a medium, else empty
    std::vector<FarmSlot> oddSlots;
    std::vector<FarmMedium> media;
    int line = 0;
};

struct FarmJukebox {
    int32_t id = 0;
    std::string name;
    bool enabled = true;
    bool doubleSided = false;
    FarmDevice changer;
    std::vector<FarmDrive> drives;
    std::vector<FarmMagazine> magazines;
    std::vector<FarmMedium> waiting;   // in the import station, the next one first
    std::vector<FarmMedium> exported;  // in the export station, the oldest first
    int line = 0;
};

struct FarmVolume {
    int32_t id = 0;  // below 0: never seen by the service
    VolumeType type = VolumeType::Disc;
    bool enabled = true;
    // only when the state to be shown differs from the usual one
    std::optional<int32_t> state;
    std::string label;
    std::string fileSystem;
    uint64_t total = 0;  // bytes
    uint64_t free = 0;   // bytes
    std::vector<std::string> directories;
    int32_t value1 = -1;  // the library's own
    uint32_t value2 = 0;
    int line = 0;
};

struct Farm {
    bool running = true;
    int32_t nextVolume = 0;  // the ID of the next new volume; 0 = after the highest one
    std::vector<FarmJukebox> jukeboxes;
    std::vector<FarmVolume> volumes;
    std::vector<FarmMedium> shelf;
};

// The state that a volume shows by whether it is enabled and by how many of its sides are reached, that is,
// in slots of present magazines. A disc or a volume set is on-line when all of its sides are reached, a
// mirror when one is.
VolumeState UsualState(VolumeType type, bool enabled, int64_t sides, int64_t reached);

// The usual state of each volume, by its ID.
std::map<int32_t, VolumeState> UsualStates(const Farm& farm);

// Removes the states of volumes that are the usual ones.
void DropUsualStates(Farm& farm);

}  // namespace embedded
