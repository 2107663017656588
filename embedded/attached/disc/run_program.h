#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "embedded/attached/base/result.h"

namespace embedded::attached {

// What a program that was run has left.
struct ProgramEnd {
    int status = 0;      // its exit status; 128 and the signal's number when a signal has ended it
    std::string output;  // of both streams, the first 64 KiB
};

// Runs a program without a shell and waits for it: with the arguments after its name, `descriptor` of this
// process as its descriptor 3, no other open files, no input, and none of the signals that a terminal sends.
// A program that takes longer than `limit` is ended. An error: it could not be run, or not be waited for.
Result<ProgramEnd> RunProgram(const std::string& path, const std::vector<std::string>& arguments,
                              int descriptor, std::chrono::milliseconds limit);

}  // namespace embedded::attached
