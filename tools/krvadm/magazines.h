#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace embedded::tools {

// "4x25" is 4 magazines of 25 slots each, "10,2x25" one of 10 and two of 25. Throws a UsageFailure when the
// text says something else.
std::vector<uint32_t> ParseMagazines(const std::string& text);

// The slots of each magazine: as many as `sizes` say, or, without sizes, a magazine for each run of addresses
// without a gap. Throws a ToolFailure when the sizes do not add up to the number of slots.
std::vector<std::vector<uint16_t>> DivideIntoMagazines(const std::vector<uint16_t>& slots,
                                                       const std::vector<uint32_t>& sizes);

}  // namespace embedded::tools
