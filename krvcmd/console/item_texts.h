#pragma once

#include <string>

#include "krvcmd/service/item_info.h"

namespace Ostrel::UI::Console {

// Where a disc side lies: the jukebox's name, the magazine (only when the jukebox has more than one), the
// slot and the side, such as "Tower\3\12.B" or "Tower\12.A".
std::string FormatLocation(const krvcmd::JukeboxInfo& jukebox, const SideKey& key);

// The three components of the SCSI address, such as "0/4/0".
std::string FormatScsiAddress(const DeviceIdentity& device);

// Vendor, without blanks at its end, and product.
std::string FormatProduct(const DeviceIdentity& device);

// Whether a jukebox's magazines are told apart by number.
bool HasSeveralMagazines(const krvcmd::JukeboxInfo& jukebox);

}  // namespace Ostrel::UI::Console
