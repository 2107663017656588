#pragma once

#include <cstdint>

namespace Ostrel::UI::Console {

// One level of a table's sort order. The direction is the result of comparing a new row's cell with an
// existing row's cell that puts the new row in front: -1 ascending, +1 descending.
struct SortKey {
    std::uint32_t columnId;
    std::int32_t direction;
};

inline constexpr std::int32_t kAscending = -1;
inline constexpr std::int32_t kDescending = 1;

}  // namespace Ostrel::UI::Console
