#pragma once

#include <ostream>

#include "tools/rehearsal/run_report.h"

namespace embedded::tools {

// JUnit XML: a test case for each expectation, for each call that was made to fail and, without an
// expectation of it, for the exit status.
void WriteJUnit(std::ostream& out, const RunReport& report);

}  // namespace embedded::tools
