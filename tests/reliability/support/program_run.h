#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace krvcmd::reliability {

// Captures what the process writes to a standard stream's descriptor.
class CapturedStream {
  public:
    // stdout or stderr.
    explicit CapturedStream(std::FILE* stream);
    ~CapturedStream();
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;

    // Captures from here on. What the stream still buffers goes to its usual target first.
    void Begin();

    // Stops capturing; returns what was written since Begin.
    std::string End();

  private:
    std::FILE* m_stream;
    int m_file;
    int m_saved = -1;  // the stream's usual target
};

// How one run of the program ended, and what it left behind.
struct ProgramRun {
    int exitStatus = 0;
    std::string output;
    std::string errorOutput;
    std::vector<std::string> calls;  // as the scripted library recorded them
};

// Runs the whole program, from the words of the command line to the exit status, inside this process and
// on the scripted library, whose script stays as it is. What the program keeps during one run
// (banner flags, session, names) starts as in a fresh process.
//
// Make one and use it for many runs. Standard output and standard error are captured during a run.
class ProgramRunner {
  public:
    using Arguments = std::span<const char* const>;
    using Main = std::function<int(Arguments)>;

    ProgramRun Run(const std::vector<std::string>& words);

    // With `main` in place of RunProgram.
    ProgramRun Run(const std::vector<std::string>& words, const Main& main);

  private:
    CapturedStream m_output{stdout};
    CapturedStream m_errorOutput{stderr};
};

// Resets what the program keeps during one run. The library's script stays.
void BeginAsFreshProcess();

// Stands in for the operator's Ctrl-C. The program checks for an interruption before every library call and
// in every loop; check number `count` and all later ones find one.
void InterruptAfterChecks(size_t count);

// No interruption until the next InterruptAfterChecks.
void CancelInterrupt();

}  // namespace krvcmd::reliability
