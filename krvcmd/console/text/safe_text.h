#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {

// Where text from discs and from the service goes.
enum class Sink : uint8_t {
    Terminal,  // which acts upon control characters
    File       // a file or a pipe, whose reader wants the bytes
};

// Where the stream ends.
Sink SinkOf(Stream stream);

// Whether a terminal would act upon the character: 0x01 to 0x1F, 0x7F and, as UTF-8, U+0080 to U+009F.
bool IsControlCharacter(const Utf8Character& character);

// Makes the text of a table's cell, which begins at `begin` and ends with `text`, fit to be shown: for a
// terminal every byte of a control character becomes "?"; otherwise line breaks only, so that a row stays one
// line.
void TameCellText(std::string& text, size_t begin, Sink sink);

// A text from the service as it may be shown on the stream: on a terminal every byte of a control character
// is "?".
std::string TamedText(std::string_view text, Stream stream);

}  // namespace Ostrel::UI::Console
