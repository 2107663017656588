#pragma once

#include <ostream>
#include <stdexcept>
#include <string>

namespace embedded::tools {

// Where a command writes: its results to `out`, its remarks to `err`.
struct Streams {
    std::ostream& out;
    std::ostream& err;
};

// A command cannot do what it was asked for. The message has one or more lines, without the tool's name in
// front.
class ToolFailure : public std::runtime_error {
  public:
    explicit ToolFailure(const std::string& message, int status = 1)
        : std::runtime_error(message), m_status(status) {}

    int GetStatus() const { return m_status; }

  private:
    int m_status;
};

// A command has done its work, but its result lacks something.
class IncompleteResult : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The command line is invalid in a way that only the command itself can tell, such as options that need each
// other.
class UsageFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace embedded::tools
