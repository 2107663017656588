#include "krvcmd/console/text/safe_text.h"

#include <algorithm>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {
namespace {

constexpr char kInstead = '?';

// Where a terminal takes single bytes for characters, 0x80 to 0x9F are control characters as they stand.
bool IsObeyedByte(const Utf8Character& character) {
    return !character.isWellFormed && character.codePoint <= 0x9F && Platform::ObeysSingleBytes();
}

void ReplaceControlCharacters(std::string& text, size_t begin) {
    while (begin < text.size()) {
        const Utf8Character character = FirstUtf8Character(std::string_view(text).substr(begin));
        if (IsControlCharacter(character) || IsObeyedByte(character))
            text.replace(begin, character.size, character.size, kInstead);
        begin += character.size;
    }
}

}  // namespace

Sink SinkOf(Stream stream) {
    return Platform::IsTerminal(stream) ? Sink::Terminal : Sink::File;
}

bool IsControlCharacter(const Utf8Character& character) {
    const char32_t value = character.codePoint;
    return character.isWellFormed && ((value >= 0x01 && value <= 0x1F) || (value >= 0x7F && value <= 0x9F));
}

void TameCellText(std::string& text, size_t begin, Sink sink) {
    if (IsPrintableAscii(std::string_view(text).substr(begin))) return;
    if (sink == Sink::Terminal) {
        ReplaceControlCharacters(text, begin);
    } else {
        std::replace(text.begin() + static_cast<ptrdiff_t>(begin), text.end(), '\n', kInstead);
    }
}

std::string TamedText(std::string_view text, Stream stream) {
    std::string tamed(text);
    if (SinkOf(stream) == Sink::Terminal) ReplaceControlCharacters(tamed, 0);
    return tamed;
}

}  // namespace Ostrel::UI::Console
