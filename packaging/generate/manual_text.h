#pragma once

#include <string>
#include <string_view>

namespace krvcmd {

// Plain text for a manual page, escaped and broken into lines of at most 79 characters; "-" is the ASCII
// character.
std::string ManualText(std::string_view text);

// Escaped text, broken at blanks into such lines.
std::string FilledManualText(const std::string& text);

// One line of an example, unbroken.
std::string ManualLine(std::string_view line);

// A line with a macro and its argument: .B "text".
std::string ManualMacro(std::string_view macro, std::string_view text);

// A line of a syntax description: words in bold, names between < and > in italics.
std::string ManualSyntax(std::string_view line);

// A comment of the C header as text for a manual page, with `names` in bold.
std::string ManualProse(std::string_view text);

}  // namespace krvcmd
