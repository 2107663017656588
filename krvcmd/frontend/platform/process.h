#pragma once

#include <cstdint>

namespace krvcmd {

// Makes the standard streams safe to use. Call it once, before any file is opened:
//  - writing into a pipe without a reader, or beyond the largest size of a file, is a write error and does
//    not end the process;
//  - a standard stream that the caller closed stays unusable, so that no file opened later takes its
//    descriptor and receives the output.
void PrepareStandardStreams();

// Whether the arguments arrived unchanged. Windows replaces characters outside the ANSI code page by
// others.
bool ArgumentsAreIntact();

// The exit status of the process for a result code: the whole code on Windows. Elsewhere only the low 8 bits
// survive, and 255 stands for an error whose low 8 bits are 0, so that no error looks like success.
int ExitStatus(uint32_t code);

}  // namespace krvcmd
