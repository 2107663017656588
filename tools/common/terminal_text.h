#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "krvcmd/console/platform/console_platform.h"

namespace embedded::tools {

// In front of the buffer of a terminal: control characters in the text become "?", so that no text of a farm
// or of a service acts on the terminal. Line breaks stay, and so does a carriage return at the start of a
// line or directly after a flush, which is how progress is shown.
class TerminalText : public std::streambuf {
  public:
    explicit TerminalText(std::streambuf& terminal) : m_terminal(terminal) {}

    // Writes a control sequence as it is, behind the text so far.
    void WriteControl(std::string_view sequence);

  protected:
    int_type overflow(int_type character) override;
    int sync() override;

  private:
    // False when the terminal takes no more.
    bool Pass();

    std::streambuf& m_terminal;
    std::string m_line;  // its start, until it is complete or flushed
};

// What follows on the stream gets this colour.
enum class Colour { Usual, Red, Green, Yellow };

// Only on a stream that ends at a terminal that TERM names, and not if NO_COLOR is set and not empty.
void SetColour(std::ostream& stream, Colour colour);

// A standard stream of the process, or one that makes text safe where it ends at a terminal.
class SafeStream {
  public:
    SafeStream(std::ostream& stream, Ostrel::UI::Console::Stream kind);

    std::ostream& Get() { return m_stream; }

  private:
    TerminalText m_text;
    std::ostream m_stream;
};

}  // namespace embedded::tools
