#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Ostrel::UI::Console {

// `text` with its lines broken at blanks so that they are not longer than `maxWidth` (0: no limit). A line's
// own line break counts as one of its characters. The blank goes where a line is broken. A word that is
// longer stays whole.
std::string WrapText(std::string_view text, size_t maxWidth);

// The line "  term - description", its end included. When it does not fit, the description is split once and
// goes on behind a tab in the next line.
std::string DefinitionText(std::string_view term, std::string_view description, size_t maxWidth);

}  // namespace Ostrel::UI::Console
