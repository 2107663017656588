#pragma once

#include <string>
#include <string_view>

namespace e2e {

// What a text leaves on the screen of a console that is `columns` wide: tabs are blanks up to the next
// multiple of 8, what finds its row full goes on in the next one, blanks at a row's end cannot be seen.
// One byte is one column.
std::string AsOnScreen(std::string_view text, int columns);

}  // namespace e2e
