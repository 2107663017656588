#pragma once

#include <optional>
#include <string>

namespace embedded::remote {

struct ServeOptions {
    enum class Rights { All, Looks };
    Rights rights = Rights::All;
    // Only this server is shown, whatever a caller asks for.
    std::optional<std::string> only;
};

// Answers one caller's requests for the farms of this machine on standard input and output, until the input
// ends. What a caller may do depends on the options alone. Throws a ProtocolFailure when the caller sends
// something else, after telling it, and a std::system_error when it cannot be read from or written to.
void Serve(const ServeOptions& options);

}  // namespace embedded::remote
