#pragma once

#include <string>
#include <string_view>

namespace krvcmd {

// A text of the program as it is printed: with the names of the program and of the service in it.
std::string ProgramText(std::string_view text);

}  // namespace krvcmd
