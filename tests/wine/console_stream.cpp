#include "tests/wine/console_stream.h"

#include <charconv>
#include <stdexcept>

namespace wine {
namespace {
constexpr char kEscape = '\x1b';

bool EndsSequence(char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}
}  // namespace

std::string ConsoleStream::Read(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes)
        ReadByte(byte, text);
    return text;
}

std::string ConsoleStream::Finish() {
    std::string text;
    if (m_returned) text += '\r';
    m_returned = false;
    if (!m_escape.empty()) throw std::runtime_error("the console's output ends inside an escape sequence");
    return text;
}

void ConsoleStream::ReadByte(char byte, std::string& text) {
    if (!m_escape.empty()) {
        m_escape += byte;
        if (EndsSequence(byte)) ReadEscape(text);
        return;
    }
    if (m_returned && byte != '\n') text += '\r';
    m_returned = byte == '\r';
    if (m_returned) return;
    if (m_source == Source::Console && byte == kEscape) {
        m_escape = byte;
    } else if (m_source == Source::Console && byte == ' ') {
        ++m_blanks;
    } else if (byte == '\n') {
        m_blanks = 0;
        text += byte;
    } else {
        EmitBlanks(text);
        text += byte;
    }
}

void ConsoleStream::ReadEscape(std::string& text) {
    // Shows or hides the cursor; clears the rest of the row.
    const bool changesNoText = m_escape == "\x1b[?25l" || m_escape == "\x1b[?25h" || m_escape == "\x1b[K";
    unsigned count = 0;
    if (changesNoText) {
        // nothing to do
    } else if (m_escape.starts_with("\x1b[") && m_escape.back() == 'C' &&
               std::from_chars(m_escape.data() + 2, m_escape.data() + m_escape.size(), count).ec ==
                   std::errc()) {
        m_blanks += count;  // the cursor steps over blanks
    } else {
        throw std::runtime_error("unknown escape sequence of the console: ESC" + m_escape.substr(1) +
                                 " after \"" + text + "\"");
    }
    m_escape.clear();
}

void ConsoleStream::EmitBlanks(std::string& text) {
    text.append(m_blanks, ' ');
    m_blanks = 0;
}

}  // namespace wine
