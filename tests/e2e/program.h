#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace e2e {

// Where the program's standard output goes.
enum class OutputTo : uint8_t {
    Pipe,         // captured
    FullDisk,     // every write fails with "no space left on device"
    LimitedFile,  // files of the program may have 1024 bytes
    Closed,       // the program is started without a standard output
    NoReader,     // a pipe whose reader has gone
};

// Signals from a person at the terminal or a supervisor.
enum class Interruption : uint8_t { Interrupt, Terminate, HangUp };

// One start of the program on top of the scripted client library.
struct Run {
    std::vector<std::string> words;  // the command line behind the program's name
    std::string script;              // of the client library, see tests/fake_library/README.md
    int columns = 0;                 // of the terminal on standard output; 0 for no terminal
    OutputTo output = OutputTo::Pipe;
    bool merged = false;         // standard error goes where standard output goes (2>&1)
    bool isInputClosed = false;  // the program is started without a standard input
    // Sent one after the other, each as soon as the record has that many calls.
    struct Signal {
        size_t afterCalls = 0;
        Interruption interruption = Interruption::Interrupt;
        int pauseMilliseconds = 0;  // before sending, once the calls are there
    };
    std::vector<Signal> signals;
    std::string locale = "C";  // the value of LC_ALL
};

struct Outcome {
    std::string standardOutput;
    std::string standardError;
    int exitStatus = -1;             // -1 when the program did not end by itself
    int killedBy = 0;                // the signal that ended it, or 0
    bool timedOut = false;           // the test ended it after a minute
    std::vector<std::string> calls;  // the record of the client library
};

// Runs the program to its end, with the scripted client library first in the library path. Line ends are "\n"
// on every platform, on a terminal too.
Outcome RunProgram(const Run& run);

}  // namespace e2e
