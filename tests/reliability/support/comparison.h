#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/order.h"
#include "tests/reliability/support/program_run.h"

namespace krvcmd::reliability {

// Scripts the library, from scratch, the same each time.
using Script = std::function<void(krvfake::FakeLibrary& library)>;

// Carries the order out twice on a library scripted the same way, once by the program and once by the
// model (model.h). Empty when the general rules hold and both made the same calls, came to the same end
// and listed as many rows; else what differs.
std::string DifferenceFromModel(ProgramRunner& program, const Order& order,
                                const std::vector<std::string>& words, const Script& script);

}  // namespace krvcmd::reliability
