#pragma once

#include <functional>
#include <string>

namespace krvcmd {

// The main function of a generator: fills the template that the first argument names with the blocks of its
// marks, writes the file that the second one names, and returns the exit status.
int FillFile(int argc, char** argv, const std::function<std::string(const std::string&)>& blockOf);

}  // namespace krvcmd
