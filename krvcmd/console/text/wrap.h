#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Ostrel::UI::Console {

// `text` with every line that is longer than `maxWidth` positions (0: no limit) broken at its last blank that
// stands at a position up to `maxWidth`; the blank is dropped. A line's own line break counts as one of its
// positions. When there is no such blank, the rest of the line stays as it is: words are never cut.
std::string WrapText(std::string_view text, size_t maxWidth);

// The line "  term - description" with its line break. A description that does not fit `maxWidth` positions
// (0: no limit) is split once, at a character; the rest follows a tab in a second line, however long it is.
std::string DefinitionText(std::string_view term, std::string_view description, size_t maxWidth);

}  // namespace Ostrel::UI::Console
