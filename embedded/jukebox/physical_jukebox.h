#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/jukebox/time_limits.h"
#include "embedded/model/farm.h"

namespace embedded {

// The values are those of the database.
enum class ElementKind : int32_t { Picker = 1, Slot = 2, MailSlot = 3, Drive = 4 };

// A place for a medium in a jukebox, as it is at this moment.
struct ElementState {
    ElementKind kind = ElementKind::Slot;
    uint16_t address = 0;
    bool isFull = false;
    bool isInverted = false;         // the medium was turned over on its last move
    std::string tag;                 // the barcode of the medium; empty when it has none or none was read
    std::optional<uint16_t> source;  // the element that the medium came from
    std::string trouble;             // what is wrong with the element, in words; empty = nothing
};

enum class Turning { Keep, Invert };

struct MediumMove {
    uint16_t source = 0;
    uint16_t destination = 0;
    Turning turning = Turning::Keep;  // Invert: the other side of the medium comes up
};

// What a drive found on the side that is up.
struct SideReading {
    uint32_t mediumType = 0;  // as in the slot and side records
    Content content = Content::Blank;
    Finalization finalization = Finalization::Unknown;
    bool isSequential = false;
    // Of the file system, where there is one.
    std::string fileSystem;
    std::string label;
    std::string uuid;
    uint64_t total = 0;  // bytes
    uint64_t free = 0;   // bytes
};

// What a file system is written with.
struct SideFormat {
    std::string label;
    bool isSequential = false;
};

// What a side is after it was to be written.
enum class SideAfter {
    Done,       // as it was asked for, and verified
    Untouched,  // as before
    Unknown,    // only reading it will tell
    Bad,        // it cannot be written, or reads back other than it was written
};
struct SideChange {
    SideAfter side = SideAfter::Done;
    std::string trouble;  // unless it is done
};

// Something that lasts while this lives.
class Hold {
  public:
    Hold() = default;
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    virtual ~Hold() = default;
};

// What happens physically in one jukebox: a changer with its drives. It knows elements and media, but neither
// volumes nor names. Everything may take minutes. Failures are thrown as Refusals, whose texts tell the
// operator what to do.
class PhysicalJukebox {
  public:
    PhysicalJukebox() = default;
    PhysicalJukebox(const PhysicalJukebox&) = delete;
    PhysicalJukebox& operator=(const PhysicalJukebox&) = delete;
    virtual ~PhysicalJukebox() = default;

    // Which elements there are and what they hold; moves nothing. Pickers, slots, mail slots, drives, each
    // kind by address. An element that the changer counts but does not tell of is left out.
    virtual std::vector<ElementState> LookAtElements() = 0;

    // While the result lives, no other host moves media. Refused when another host holds the changer; null
    // when the changer cannot be held. The result may not outlive this object.
    virtual std::unique_ptr<Hold> KeepOtherHostsAway() = 0;

    // Makes the changer look at its elements itself, barcodes included.
    virtual void TakeInventory() = 0;

    virtual void MoveMedium(const MediumMove& move) = 0;

    // The drives count from zero, as in the catalogue. Each waits until the drive is ready.
    virtual SideReading ReadSide(int32_t drive) = 0;
    virtual SideChange FormatSide(int32_t drive, const SideFormat& format) = 0;
    virtual SideChange EraseSide(int32_t drive) = 0;
    virtual SideChange FinalizeSide(int32_t drive) = 0;

    // Whether the drive can write media of this type, as in the slot and side records; moves nothing.
    virtual bool CanWrite(int32_t drive, uint32_t mediumType) = 0;
};

// Where a device is reached, and what tells that it is still the same one.
struct DeviceAddress {
    std::string address;       // /dev/sgN or iscsi://HOST:PORT/TARGET/LUN; empty = not known
    std::string serialNumber;  // empty = it has none
};

struct JukeboxAddress {
    std::string name;  // for messages
    DeviceAddress changer;
    std::string credentials;  // a file; empty = none
    TimeLimits limits;
    int64_t reservationKey =
        0;  // who holds the changer, for other hosts; every process of a farm has the same
    std::vector<DeviceAddress> drives;
};

using JukeboxOpener = std::function<std::unique_ptr<PhysicalJukebox>(const JukeboxAddress&)>;

}  // namespace embedded
