#include "tools/common/terminal_text.h"

#include <string_view>

#include "krvcmd/console/text/safe_text.h"

namespace embedded::tools {

namespace Console = Ostrel::UI::Console;

TerminalText::int_type TerminalText::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    m_line += traits_type::to_char_type(character);
    if (m_line.back() == '\n' && !Pass()) return traits_type::eof();
    return character;
}

int TerminalText::sync() {
    return Pass() ? m_terminal.pubsync() : -1;
}

bool TerminalText::Pass() {
    const size_t begin = m_line.starts_with('\r') ? 1 : 0;
    const bool isComplete = m_line.ends_with('\n');
    if (isComplete) m_line.pop_back();
    m_line = m_line.substr(0, begin) +
             Console::SafeCellText(std::string_view(m_line).substr(begin), Console::Sink::Terminal);
    if (isComplete) m_line += '\n';
    const auto length = static_cast<std::streamsize>(m_line.size());
    const bool isPassed = m_terminal.sputn(m_line.data(), length) == length;
    m_line.clear();
    return isPassed;
}

SafeStream::SafeStream(std::ostream& stream, Console::Stream kind)
    : m_text(*stream.rdbuf()),
      m_stream(Console::SinkOf(kind) == Console::Sink::Terminal ? &m_text : stream.rdbuf()) {}

}  // namespace embedded::tools
