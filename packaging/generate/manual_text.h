#pragma once

#include <string>
#include <string_view>

namespace krvcmd {

// Text for a manual page, in lines of at most 79 characters: nothing in it is taken for a request, and "-"
// comes out as the character that is typed.
std::string ManualText(std::string_view text);

// Text that is escaped already, broken at blanks into such lines.
std::string FilledManualText(const std::string& text);

// One line of an example, not broken.
std::string ManualLine(std::string_view line);

// A macro and its argument, a whole line: .B "text".
std::string ManualMacro(std::string_view macro, std::string_view text);

// A line of a syntax description: words in bold, what stands between < and > in italics.
std::string ManualSyntax(std::string_view line);

// Prose of the C header, likewise, with `names` in bold.
std::string ManualProse(std::string_view text);

}  // namespace krvcmd
