#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

#include "tools/farm_diff/plan.h"

namespace embedded::tools {

// Changes the colour of what follows on a stream; ChangeEffect::Alters and so on, nothing = the usual colour.
using ColourSetter = std::function<void(std::ostream& out, std::optional<ChangeEffect> effect)>;

// The plan for people: the changes by jukebox and magazine, and their counts in the last line. Writes
// nothing for an empty plan. The texts of the farm are harmless on a terminal.
void WritePlan(std::ostream& out, const Plan& plan, const ColourSetter& setColour = {});

// One line: "slot 3 -> export station: Invoices 01 (volume 57)". `group` is the jukebox and the magazine that
// the line stands under; places elsewhere are named with theirs.
std::string ChangeText(const Change& change, const Plan& plan, std::pair<int32_t, int32_t> group);

// "7 changes: 3 exported, 1 formatted, 3 imported"
std::string CountText(const Plan& plan);

}  // namespace embedded::tools
