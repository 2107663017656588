#pragma once

#include <string>
#include <string_view>

namespace wine {

// Where the bytes of a Windows program come from.
enum class Source : unsigned char {
    File,     // a pipe: the C runtime's text mode, "\r\n" at line ends
    Console,  // wine's console on a pseudo-terminal: rows of a screen, painted with escape sequences
};

// Turns what a Windows program writes under wine into plain lines that end in "\n".
//
// A console shows rows of its screen: a line longer than the screen's width becomes two rows, a tab becomes
// blanks, blanks at a row's end disappear. AsOnScreen (tests/e2e/expect_outcome.h) does the same to a text.
class ConsoleStream {
  public:
    explicit ConsoleStream(Source source) : m_source(source) {}

    // The plain text of the bytes that are complete so far. Bytes may come in pieces of any size.
    // Throws std::runtime_error on an escape sequence that a text without cursor movements does not
    // need.
    std::string Read(std::string_view bytes);

    // The rest of the text, after the last bytes.
    std::string Finish();

  private:
    void ReadByte(char byte, std::string& text);
    void ReadEscape(std::string& text);
    void EmitBlanks(std::string& text);

    Source m_source;
    std::string m_escape;                 // the beginning of an escape sequence
    bool m_returned = false;              // a "\r" that a "\n" may follow
    std::string::size_type m_blanks = 0;  // of a row, until other text follows
};

}  // namespace wine
