#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/table/table.h"
#include "krvcmd/console/table/table_text.h"
#include "krvcmd/console/writer/console_streams.h"
#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

// The two program-wide names that texts refer to as "[CmdLine]" and "[ProductName]". The driver sets them at
// the start; a console writer copies them when it is constructed.
struct ProgramNames {
    std::string commandName;
    std::string productName;
};

ProgramNames& GetProgramNames();

}  // namespace krvcmd

namespace Ostrel::UI::Console {

// Replaces every `placeholder` in `text`. Each search starts at the beginning of the text, so a placeholder
// that a replacement completes is replaced too. `replacement` must not contain `placeholder`.
void ReplacePlaceholder(std::string& text, std::string_view placeholder, std::string_view replacement);

// The console writer: free text, definition lines and its own table. In every text "%%" shows as one percent
// sign, any other "%" as itself.
class COutputObject : public CTable {
  public:
    COutputObject();

    // Writes free text with the program's names in place of "[CmdLine]" and "[ProductName]". Lines longer
    // than the line width are broken at blanks; words are never cut. Standard output is flushed before text
    // goes to standard error.
    void PrintText(Stream stream, std::string_view text);

    // Writes the line "  term - description" to standard output. A description that does not fit is split
    // once, at a character; the rest follows a tab in a second line.
    void PrintDefinition(std::string_view term, std::string_view description);

    // Writes the table to standard output; nothing when it has no columns or no cells.
    void Print();

    // Positions of a line, for text and tables; 0 is no limit.
    void SetMaxWidth(uint32_t width) { m_maxWidth = width; }
    uint32_t GetMaxWidth() const { return m_maxWidth; }

    // True: header, underline and aligned cells. False: only rows, their cells' full texts with the separator
    // between them.
    void SetFormatted(bool formatted) { m_formatted = formatted; }

    // Flushes standard output and returns the first write error since the last Finish as a system error. A
    // pipe without a reader is no error. From an error to the next Finish, text for the same stream is
    // dropped.
    krvcmd::Status Finish() { return m_streams.Finish(); }

  private:
    // Sets the width of every column that has cells to its natural width.
    void MeasureColumns();
    // Narrows elastic columns when the table is wider than the line. Returns the width of the table's lines.
    size_t FitIntoLine();
    TableLayout MakeLayout(size_t lineWidth) const;
    // Writes a text in which "%%" stands for one percent sign.
    void WriteFormat(Stream stream, std::string format);

    uint32_t m_maxWidth = 1000;
    bool m_formatted = true;
    std::string m_commandName;
    std::string m_productName;
    ConsoleStreams m_streams;
};

}  // namespace Ostrel::UI::Console
