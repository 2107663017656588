#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/platform/console_platform.h"

namespace Ostrel::UI::Console {

// Texts from discs and from the service may hold control characters, which must not reach a terminal.

// Where a stream ends.
enum class Sink : uint8_t {
    Terminal,  // acts on control characters
    File       // a file or a pipe, whose reader wants the bytes as they are
};

Sink SinkOf(Stream stream);

// Makes a table cell safe to show; its text runs from byte `begin` to the end of `text`. For a terminal every
// byte of a control character becomes "?", for a file every line break does, so that a row stays one line.
void MakeCellSafe(std::string& text, size_t begin, Sink sink);

// `text`, safe to show on the stream: on a terminal every byte of a control character becomes "?".
std::string SafeText(std::string_view text, Stream stream);

}  // namespace Ostrel::UI::Console
