#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/platform/console_platform.h"

namespace Ostrel::UI::Console {

// Texts from discs and from the service may hold characters that must not reach a terminal: control
// characters; marks that turn the direction of a row around; characters without a width, which hide in a
// name; more than four combining marks on one character, which cover the rows around. On a terminal every
// byte of such a character becomes "?". The joiner inside an emoji stays.

// Where a stream ends.
enum class Sink : uint8_t {
    Terminal,  // acts on control characters
    File       // a file or a pipe, whose reader wants the bytes as they are
};

Sink SinkOf(Stream stream);

// Whether SafeCellText changes the text for any sink. False for printable ASCII.
bool NeedsReplacing(std::string_view text);

// The text of a table cell, safe to show. In a file only line breaks become "?", so that a row stays one
// line.
std::string SafeCellText(std::string_view text, Sink sink);

// `text`, safe to show on the stream. In a file it stays as it is.
std::string SafeText(std::string_view text, Stream stream);

}  // namespace Ostrel::UI::Console
