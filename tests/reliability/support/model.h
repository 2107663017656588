#pragma once

#include <cstddef>

#include "tests/reliability/support/command_spec.h"
#include "tests/reliability/support/model_library.h"

namespace krvcmd::reliability {

struct Expected {
    Result result;
    size_t rows = 0;  // of the query's table
    bool quiet = false;
    bool endsBeforeTheSession = false;  // the command line is invalid
};

// A second, small implementation of the commands that shares no code with the program. On the same library
// both must make the same calls and come to the same result. It reads no words and prints nothing.
Expected CarryOut(const CommandSpec& command);

}  // namespace krvcmd::reliability
