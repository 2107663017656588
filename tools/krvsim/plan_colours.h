#pragma once

#include "tools/common/terminal_text.h"
#include "tools/farm_diff/plan_text.h"

namespace embedded::tools {

// What adds something is green, what takes something away red, the rest yellow.
inline ColourSetter PlanColours() {
    return [](std::ostream& out, std::optional<ChangeEffect> effect) {
        constexpr Colour kColours[] = {Colour::Green, Colour::Red, Colour::Yellow};
        SetColour(out, effect.has_value() ? kColours[static_cast<size_t>(*effect)] : Colour::Usual);
    };
}

}  // namespace embedded::tools
