#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "krvcmd/console/query/query_table.h"
#include "krvcmd/frontend/grammar/keyword.h"
#include "krvcmd/frontend/report/help_table.h"

namespace krvcmd {

// `indent` blanks, the text, then, unless `width` is 0, blanks until the text part is `width`
// characters long. A longer text is not cut.
std::string Pad(size_t indent, size_t width, std::string_view text);

// Prints help to standard output through the console writer that it is given (not owned).
class HelpPrinter {
  public:
    enum class Parameters { Hide, Show };
    enum class Layout {
        General,   // under a command of the general help: indented by 8 and 12
        Detailed,  // in the help of one command: indented by 0 and 4
    };

    explicit HelpPrinter(Ostrel::UI::Console::CKrvQueryTable& writer) : m_writer(writer) {}

    // Help for `word`: the detailed help of the command that it begins, else the general help.
    void PrintHelp(std::string_view word);

    void PrintGeneralHelp();

    // The first entry of the help table that `word` begins is printed. Unlike on the command line
    // an abbreviation need not be unique. False when no entry fits; nothing is printed then.
    bool PrintDetailedHelp(std::string_view word);

    // How help is asked for.
    void PrintHelpOnHelp();

    void PrintCommonOptions();
    void PrintCommands(Parameters parameters);
    void PrintParameters(const KeywordNode& command, Layout layout);
    void PrintKeywordLine(size_t indent, size_t width, const KeywordNode& node);

  private:
    void Write(std::string_view text);
    void PrintEntry(const HelpEntry& entry);

    Ostrel::UI::Console::CKrvQueryTable& m_writer;
};

}  // namespace krvcmd
