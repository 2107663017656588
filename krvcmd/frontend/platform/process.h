#pragma once

#include <cstdint>

namespace krvcmd {

// Makes the process's standard streams safe to use, once, before anything else is opened:
//  - a reader of the output that goes away does not end the process;
//  - a standard stream that was closed by the caller stays unusable. Without this, the next file
//    that a library opens would take its place, and output would be written into that file.
void PrepareStandardStreams();

// The process's exit status for a result code. Where a process can only report 8 bits, these are
// the low 8 bits of the code, and 255 for an error whose low 8 bits are 0: an error never looks
// like success. Elsewhere it is the whole code.
int ExitStatus(uint32_t code);

}  // namespace krvcmd
