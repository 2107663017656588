#pragma once

#include <cstdint>
#include <string_view>

namespace Ostrel::UI::Console {

// The words for the codes and flags of the client library's records. All of them are constants. A code
// without a word gives an empty text unless something else is said.

std::string_view EnabledText(std::uint32_t enabled);          // of jukeboxes and drives
std::string_view PresentText(std::uint32_t present);          // of magazines
std::string_view DoubleSidedText(std::uint32_t doubleSided);  // whether a jukebox turns media over
std::string_view SideText(std::int32_t side);                 // 1 is "B", everything else "A"
std::string_view SlotStatusText(std::uint32_t state);
std::string_view VolumeStatusText(std::uint32_t state);  // unlisted states are "unknown"
std::string_view VolumeTypeText(std::uint32_t type);
std::string_view RecordedStateText(std::uint32_t state);
std::string_view FinalizationText(std::uint32_t state);
std::string_view MediaTypeText(std::uint32_t code);

// The media type code of a slot or side without a medium.
inline constexpr std::uint32_t kNoMediumCode = 255;

}  // namespace Ostrel::UI::Console
