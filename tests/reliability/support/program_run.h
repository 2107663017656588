#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "tests/reliability/support/captured_stream.h"

namespace krvcmd::reliability {

// How one run of the program ended, and what it left behind.
struct ProgramRun {
    int exitStatus = 0;
    std::string output;
    std::string errorOutput;
    std::vector<std::string> calls;  // as the scripted library recorded them
};

// Runs the whole program, from the words of the command line to the exit status, inside this process and
// on the scripted library, whose script stays as it is. What the program keeps for the time of one run
// (banner flags, session, names, interruption) is as in a fresh process.
//
// Make one and use it for many runs. Standard output and standard error are caught while a run lasts.
class ProgramRunner {
  public:
    using Arguments = std::span<const char* const>;
    using Main = std::function<int(Arguments)>;

    ProgramRun Run(const std::vector<std::string>& words);

    // With `main` in place of the program's own way from the words to the exit status.
    ProgramRun Run(const std::vector<std::string>& words, const Main& main);

  private:
    CapturedStream m_output{stdout};
    CapturedStream m_errorOutput{stderr};
};

// What a fresh process begins with; everything but the library's script.
void BeginAsFreshProcess();

}  // namespace krvcmd::reliability
