#pragma once

#include <string>
#include <string_view>

namespace wine {

// Where a Windows program's bytes come from decides how they are read.
enum class Source : unsigned char {
    File,     // a pipe: the C runtime's text mode, "\r\n" at line ends
    Console,  // wine's console on a pseudo-terminal: rows of a screen, painted with escape sequences
};

// Turns what a Windows program writes under wine into plain lines that end in "\n".
//
// From a console come the rows of the screen: a line that is longer than the screen is wide is two
// rows, a tab is blanks, and blanks at a row's end are gone. AsOnScreen (tests/e2e/expect_outcome.h) does
// the same to a text.
class ConsoleStream {
  public:
    explicit ConsoleStream(Source source) : m_source(source) {}

    // The plain text of the bytes that are complete so far. Bytes may come in pieces of any size.
    // Throws std::runtime_error on an escape sequence that a text without cursor movements does not
    // need.
    std::string Read(std::string_view bytes);

    // What is left when no more bytes come.
    std::string Finish();

  private:
    void ReadByte(char byte, std::string& text);
    void ReadEscape(std::string& text);
    void EmitBlanks(std::string& text);

    Source m_source;
    std::string m_escape;                 // the beginning of an escape sequence
    bool m_returned = false;              // a "\r" that a "\n" may follow
    std::string::size_type m_blanks = 0;  // of a row, as long as nothing else follows them
};

}  // namespace wine
