#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/text/short_text.h"
#include "krvcmd/service/sdk/records.h"

namespace Ostrel::UI::Console {

// The words for the codes and flags of the client library's records; all of them are constants. A code
// without a word has an empty text unless its comment says otherwise.

std::string_view EnabledText(uint32_t enabled);          // of jukeboxes and drives
std::string_view PresentText(uint32_t present);          // of magazines
std::string_view DoubleSidedText(uint32_t doubleSided);  // whether a jukebox turns media over
std::string_view SideText(int32_t side);                 // 1 is "B", everything else "A"
std::string_view SlotStatusText(uint32_t state);
std::string_view VolumeStatusText(uint32_t state);  // any other state is "unknown"
std::string_view VolumeTypeText(uint32_t type);
std::string_view RecordedStateText(uint32_t state);
std::string_view FinalizationText(uint32_t state);
std::string_view MediaTypeText(uint32_t code);

// Whether the magazines of a jukebox are numbered: it has more than one.
bool HasSeveralMagazines(const krvcmd::JukeboxInfo& jukebox);

// The longest has the longest name, two numbers of 11 characters, two backslashes and the side.
using LocationText = ShortText<sizeof(JukeboxRecord::name) + 26>;

// Where a disc side is: the jukebox's name, the magazine (only when the jukebox has several), the slot and
// the side, such as "Tower\3\12.B" or "Tower\12.A". The key is zero-based, the text one-based.
LocationText FormatLocation(const krvcmd::JukeboxInfo& jukebox, const SideKey& key);

// The three components of the SCSI address, such as "0/4/0".
std::string FormatScsiAddress(const DeviceIdentity& device);

// The vendor without trailing blanks and, after a blank, the product; the product alone without a vendor.
std::string FormatProduct(const DeviceIdentity& device);

}  // namespace Ostrel::UI::Console
