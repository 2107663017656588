#pragma once

namespace krvcmd {

// Makes the process's standard streams safe to use, once, before anything else is opened:
//  - a reader of the output that goes away does not end the process;
//  - a standard stream that was closed by the caller stays unusable. Without this, the next file
//    that a library opens would take its place, and output would be written into that file.
void PrepareStandardStreams();

}  // namespace krvcmd
