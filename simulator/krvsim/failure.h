// What ends a command of krvsim that cannot do what it was asked for.
#pragma once

#include <stdexcept>
#include <string>

namespace krvsim {

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

}  // namespace krvsim
