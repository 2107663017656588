#pragma once

#include <string_view>

#include "embedded/remote/protocol/frame.h"

namespace embedded::remote {

// The standard input and output of this process, as numbers of the system.
inline constexpr int kStandardInput = 0;
inline constexpr int kStandardOutput = 1;

// Comes before everything else: bytes pass as they are, and a caller that has gone away is an error of
// writing.
void PrepareStreams();

// Waits for bytes and appends them; false at the end of the input. Throws a std::system_error.
bool ReadMore(int input, FrameReader& reader);

// Throws a std::system_error.
void WriteAll(int output, std::string_view bytes);

}  // namespace embedded::remote
