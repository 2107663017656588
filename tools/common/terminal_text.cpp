#include "tools/common/terminal_text.h"

#include <cstdlib>
#include <string_view>

#include "krvcmd/console/text/safe_text.h"

namespace embedded::tools {

namespace Console = Ostrel::UI::Console;

namespace {

// A terminal that TERM does not name may show the sequences as text, as the console of Windows does.
bool WantsColour() {
    const char* terminal = std::getenv("TERM");
    const char* noColour = std::getenv("NO_COLOR");
    return terminal != nullptr && std::string_view(terminal) != "dumb" &&
           (noColour == nullptr || *noColour == '\0');
}

}  // namespace

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

void TerminalText::WriteControl(std::string_view sequence) {
    if (!Pass()) return;
    m_terminal.sputn(sequence.data(), static_cast<std::streamsize>(sequence.size()));
}

void SetColour(std::ostream& stream, Colour colour) {
    constexpr std::string_view kSequences[] = {"\x1b[0m", "\x1b[31m", "\x1b[32m", "\x1b[33m"};
    auto* const terminal = dynamic_cast<TerminalText*>(stream.rdbuf());
    if (terminal == nullptr || !WantsColour()) return;
    terminal->WriteControl(kSequences[static_cast<size_t>(colour)]);
}

SafeStream::SafeStream(std::ostream& stream, Console::Stream kind)
    : m_text(*stream.rdbuf()),
      m_stream(Console::SinkOf(kind) == Console::Sink::Terminal ? &m_text : stream.rdbuf()) {}

}  // namespace embedded::tools
