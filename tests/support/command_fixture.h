#pragma once

#include <string>

#include "tests/support/service_fixture.h"

namespace krvcmd::test {

// What a command line has done, from its parsing to the command's end.
struct Outcome {
    std::string status;
    std::string output;  // standard output
    Calls calls;
};

// A test that runs whole command lines against the scripted client library. Nothing is reported at the
// end: that is the driver's work.
class CommandTest : public ServiceTest {
  protected:
    // Parses the words and runs the command that they name.
    Outcome Run(const Words& words);

    // As Run, with the banner already shown and a session that must be opened first and closed last: its
    // two calls are left out.
    Outcome Work(const Words& words);

    // The status of Work, then its calls, one a line: "OK" and "KrvMediaImport J=8 M=0 S=0", for example.
    Calls StatusAndCalls(const Words& words);
};

}  // namespace krvcmd::test
