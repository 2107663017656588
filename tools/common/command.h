// What ends a command of krvsim that cannot do what it was asked for.
#pragma once

#include <ostream>
#include <stdexcept>
#include <string>

namespace embedded::tools {

// Where a command writes: its results to `out`, and what it has to remark to `err`.
struct Streams {
    std::ostream& out;
    std::ostream& err;
};

// The message is one line or several, without "krvsim: " in front. Exit status 1.
class ToolFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The command line itself is wrong, beyond what its grammar tells. Exit status 2.
class UsageFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace embedded::tools
