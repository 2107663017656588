#pragma once

#include <cstddef>

#include "tests/reliability/support/model_result.h"
#include "tests/reliability/support/order.h"

namespace krvcmd::reliability {

struct Expected {
    Result result;
    size_t rows = 0;  // of the query's table
    bool quiet = false;
    bool endsBeforeTheSession = false;  // the command line is refused
};

// A second, small program that does what the real one is documented to do: it carries out an order by
// calling the client library itself. Written from the description of the commands, with none of the
// program's own code, so that the same library asked by both must record the same calls and lead to the
// same end. What it does not do: read words, print anything.
Expected CarryOut(const Order& order);

}  // namespace krvcmd::reliability
