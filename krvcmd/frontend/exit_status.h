#pragma once

#include <cstdint>

namespace krvcmd {

// The process's exit status for a result code. Where a process can only report 8 bits, these are
// the low 8 bits of the code, and 255 for an error whose low 8 bits are 0: an error never looks
// like success. Elsewhere it is the whole code.
int ExitStatus(std::uint32_t code);

}  // namespace krvcmd
