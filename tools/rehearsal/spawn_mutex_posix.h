#pragma once

#include <mutex>

namespace embedded::tools {

// Held while a process starts, since it inherits every file that is open at that moment: neither may the pipe
// of one process stay open in another one, nor a program that is still being written, which cannot be run as
// long as anybody has it open for writing. Defined beside RunProcess.
std::mutex& SpawnMutex();

}  // namespace embedded::tools
