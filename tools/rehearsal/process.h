#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tools/rehearsal/recorded_output.h"

namespace embedded::tools {

// A file or folder that lies over another one for the process alone.
struct Overlay {
    std::filesystem::path source;
    std::filesystem::path target;
};

struct ProcessRequest {
    std::vector<std::string> words;  // the program, by path or to be found on the PATH, and its arguments
    std::map<std::string, std::string> environment;  // variables that differ from this process's
    bool closedOff = false;                          // only where FindObstacle finds none
    std::vector<Overlay> overlays;                   // for a process that is closed off
    std::filesystem::path output;  // gets both outputs, and there is no input; empty = the streams of this
                                   // process
    RecordedOutput* record = nullptr;  // also gets what goes to the streams of this process; the caller's
};

// Runs the process to its end and returns its exit status, 128 and the number of the signal that ended it. A
// process with the streams of this one also gets its signals. Throws ToolFailure when it cannot be run.
int RunProcess(const ProcessRequest& request);

// Why a process cannot be closed off on this machine; empty where it can.
std::string FindObstacle();

// The program that the word names, as a shell finds it; empty when there is none.
std::filesystem::path FindProgram(const std::string& word);

// The path of this process's own program.
std::filesystem::path OwnProgram();

}  // namespace embedded::tools
