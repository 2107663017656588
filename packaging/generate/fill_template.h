#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace krvcmd {

// Replaces each line of the form "@words@" by the block that `blockOf` makes of the words, with the
// indentation of the line, and each @version@ by the program's version.
std::string FillTemplate(std::string_view text,
                         const std::function<std::string(const std::string&)>& blockOf);

// A text of the program's tables as the program prints it, with the names of the program and of the service.
std::string ProgramText(std::string_view text);

}  // namespace krvcmd
