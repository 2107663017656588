#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/console/writer/output_object.h"

namespace krvcmd {

// A text of the help, printed and wrapped as one: free text, or a definition line when it has a term.
struct HelpText {
    std::string term;
    std::string text;
};

// The help for `word`, in the order of printing: that of the first command that the word equals or begins,
// else the general help. Unlike on the command line, an abbreviation need not be unique.
std::vector<HelpText> HelpTexts(std::string_view word);

// Prints the help for `word` to standard output.
void PrintHelp(std::string_view word, Ostrel::UI::Console::COutputObject& writer);

}  // namespace krvcmd
