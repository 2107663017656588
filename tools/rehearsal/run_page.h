#pragma once

#include <ostream>

#include "tools/rehearsal/run_report.h"

namespace embedded::tools {

// The page of a rehearsal: both farms side by side, the plan, the calls and the output; at its head how the
// command ended, how long the calls take, and what was not as it should be.
void WriteRunPage(std::ostream& out, const RunReport& report);

}  // namespace embedded::tools
