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

// The two program-wide names that printed texts refer to as "[CmdLine]" and "[ProductName]".
// The driver sets them at start; console writers copy them when they are constructed.
struct ProgramNames {
    std::string commandName;
    std::string productName;
};

ProgramNames& GetProgramNames();

}  // namespace krvcmd

namespace Ostrel::UI::Console {

// Replaces every `placeholder` in `text`. After each replacement the search begins anew, so one that a
// replacement completes is replaced too. The replacement must not hold the placeholder.
void ReplacePlaceholder(std::string& text, std::string_view placeholder, std::string_view replacement);

// Turns a text as formatted printing takes it into the text that shows: from left to right, "%%" becomes one
// per cent sign; a per cent sign without a second one stays. Nothing else is a conversion.
void ResolvePercentSigns(std::string& text);

// The console writer: free text, definition lines and its own table. Every text is written as a format
// without arguments would be: "%%" shows as one per cent sign, any other "%" as itself.
class COutputObject : public CTable {
  public:
    // Copies the two program-wide names.
    COutputObject();

    // Writes free text. "[CmdLine]" and "[ProductName]" become the program's names; lines that are longer
    // than the line width are broken at blanks, words never. Whatever stands on standard output is
    // brought out before text goes to standard error.
    void PrintText(Stream stream, std::string_view text);

    // Writes one line "  term - description" to standard output; a description that does not fit is
    // split once, at a character, and goes on in a second line behind a tab.
    void PrintDefinition(std::string_view term, std::string_view description);

    // Writes the table to standard output; nothing when it has no columns or no cell.
    void Print();

    // Characters of a line, for text and tables; 0 is no limit.
    void SetMaxWidth(uint32_t width) { m_maxWidth = width; }
    uint32_t GetMaxWidth() const { return m_maxWidth; }

    // True: header, underline, aligned cells. False: rows only, full texts with the separator between.
    void SetFormatted(bool formatted) { m_formatted = formatted; }

    // Flushes standard output and gives the first write error since the last Finish as a system error. A pipe
    // without a reader is no error. From an error to the next Finish, text for the same stream is dropped.
    krvcmd::Status Finish() { return m_streams.Finish(); }

  private:
    // Gives every column that has cells its natural width.
    void MeasureColumns();
    // Makes elastic columns give way when the table is wider than the line; the width of the table's lines.
    size_t FitIntoLine();
    TableLayout MakeLayout(size_t lineWidth) const;
    // The way of all text to the console.
    void WriteFormat(Stream stream, std::string text);

    uint32_t m_maxWidth = 1000;
    bool m_formatted = true;
    std::string m_commandName;
    std::string m_productName;
    ConsoleStreams m_streams;
};

}  // namespace Ostrel::UI::Console
