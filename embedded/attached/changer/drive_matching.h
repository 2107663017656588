#pragma once

#include <vector>

#include "embedded/attached/device/identity.h"
#include "embedded/attached/scsi/element_status.h"

namespace embedded::attached {

// How it is known which drive is behind an element.
enum class Evidence {
    None,
    Identifier,        // the changer names an identifier that the drive has
    SerialNumber,      // the changer names the drive's serial number
    PartOfIdentifier,  // what came of the identifier fits this one drive only
    Loading,           // the drive became ready when a disc was moved there
};

// "identifier", "serial number", "part of identifier", "loading a disc" or "-".
const char* NameOf(Evidence evidence);

struct DriveMatch {
    Evidence evidence = Evidence::None;
    std::vector<size_t>
        drives;  // positions among the candidates; several: one drive that is reached in several ways
};

// For each changer, one match for each of its drive elements. A changer that is reached in two ways may be
// there twice. Where a changer names one drive for two elements, or where an identifier fits drives that
// differ, nothing is matched.
std::vector<std::vector<DriveMatch>> MatchDrives(const std::vector<std::vector<Element>>& changers,
                                                 const std::vector<Identity>& candidates);

}  // namespace embedded::attached
