#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace krvcmd {

// The text with each line of the form "@words@" replaced by what `blockOf` makes of the words, and
// each @version@ by the program's version. Lines of a block get the indentation of the line that they
// replace.
std::string FillTemplate(std::string_view text,
                         const std::function<std::string(const std::string&)>& blockOf);

}  // namespace krvcmd
