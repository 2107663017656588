#include "krvcmd/console/text/safe_text.h"

#include <algorithm>
#include <span>

#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {
namespace {

constexpr char kReplacement = '?';

// Whether it is a single byte from 0x80 to 0x9F that the terminal takes for a control character.
bool IsControlByte(const Utf8Character& character) {
    return !character.isWellFormed && character.codePoint <= 0x9F && Platform::HasSingleByteControls();
}

void ReplaceControlCharacters(std::string& text, size_t begin) {
    while (begin < text.size()) {
        const Utf8Character character = FirstUtf8Character(std::string_view(text).substr(begin));
        if (IsControlCharacter(character) || IsControlByte(character))
            text.replace(begin, character.size, character.size, kReplacement);
        begin += character.size;
    }
}

}  // namespace

Sink SinkOf(Stream stream) {
    return Platform::IsTerminal(stream) ? Sink::Terminal : Sink::File;
}

void MakeCellSafe(std::string& text, size_t begin, Sink sink) {
    if (IsPrintableAscii(std::string_view(text).substr(begin))) return;
    if (sink == Sink::Terminal) {
        ReplaceControlCharacters(text, begin);
    } else {
        std::ranges::replace(std::span(text).subspan(begin), '\n', kReplacement);
    }
}

std::string SafeText(std::string_view text, Stream stream) {
    std::string safe(text);
    if (SinkOf(stream) == Sink::Terminal) ReplaceControlCharacters(safe, 0);
    return safe;
}

}  // namespace Ostrel::UI::Console
