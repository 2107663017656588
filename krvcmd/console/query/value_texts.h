#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/service/sdk/records.h"

namespace Ostrel::UI::Console {

// The words for the codes and flags of the client library's records. All of them are constants. A code
// without a word gives an empty text unless something else is said.

std::string_view EnabledText(uint32_t enabled);          // of jukeboxes and drives
std::string_view PresentText(uint32_t present);          // of magazines
std::string_view DoubleSidedText(uint32_t doubleSided);  // whether a jukebox turns media over
std::string_view SideText(int32_t side);                 // 1 is "B", everything else "A"
std::string_view SlotStatusText(uint32_t state);
std::string_view VolumeStatusText(uint32_t state);  // unlisted states are "unknown"
std::string_view VolumeTypeText(uint32_t type);
std::string_view RecordedStateText(uint32_t state);
std::string_view FinalizationText(uint32_t state);
std::string_view MediaTypeText(uint32_t code);

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
