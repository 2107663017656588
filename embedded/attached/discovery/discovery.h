#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "embedded/attached/changer/drive_matching.h"
#include "embedded/attached/changer/inventory.h"
#include "embedded/attached/device/identity.h"

namespace embedded::attached {

// Where to look, and what else is known of the place.
struct Place {
    std::string address;
    std::string blockNode;  // the same drive as a block device of this machine, or empty
};

struct FoundDevice {
    Place place;
    Identity identity;
};

// A drive element of a changer, and the drive behind it: none when it is not known, several entries when the
// drive is reached in several ways.
struct FoundDriveElement {
    Element element;
    Evidence evidence = Evidence::None;
    std::vector<FoundDevice> drives;
};

struct FoundChanger {
    FoundDevice device;
    Geometry geometry;
    std::vector<FoundDriveElement> drives;
};

struct Findings {
    std::vector<FoundChanger> changers;
    std::vector<FoundDevice> loneDrives;  // optical drives that no changer has named
    std::vector<Error> problems;          // of devices that could not be asked
};

using Opener = std::function<Result<std::unique_ptr<Transport>>(const std::string& address)>;

// Asks every place what is there, and every changer for its elements. Nothing is moved and no medium is
// looked at.
Findings Discover(const std::vector<Place>& places, const Opener& open, Waiting& waiting = RealWaiting());

}  // namespace embedded::attached
