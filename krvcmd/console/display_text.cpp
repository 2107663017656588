#include "krvcmd/console/display_text.h"

#include "krvcmd/console/control_characters.h"
#include "krvcmd/console/platform/character_width.h"
#include "krvcmd/console/utf8_character.h"

namespace Ostrel::UI::Console {

namespace {

// Whether every byte takes one position.
bool IsCountedInBytes(std::string_view text) {
    return IsPrintableAscii(text) || !Platform::ReadsUtf8();
}

std::size_t PositionsOf(const Utf8Character& character) {
    // Control characters are shown as one "?" for each byte.
    if (!character.isWellFormed || IsControlCharacter(character)) return character.size;
    return static_cast<std::size_t>(Platform::CharacterWidth(character.codePoint));
}

}  // namespace

std::size_t DisplayLengthOfAny(std::string_view text) {
    if (!Platform::ReadsUtf8()) return text.size();
    std::size_t length = 0;
    while (!text.empty()) {
        const Utf8Character character = FirstUtf8Character(text);
        length += PositionsOf(character);
        text.remove_prefix(character.size);
    }
    return length;
}

std::string_view LeadingPart(std::string_view text, std::size_t length) {
    if (IsCountedInBytes(text)) return text.substr(0, length);
    std::size_t size = 0;
    std::size_t taken = 0;
    while (size < text.size()) {
        const Utf8Character character = FirstUtf8Character(text.substr(size));
        taken += PositionsOf(character);
        if (taken > length) break;
        size += character.size;
    }
    return text.substr(0, size);
}

std::string_view TrailingPart(std::string_view text, std::size_t length) {
    if (IsCountedInBytes(text)) return text.size() <= length ? text : text.substr(text.size() - length);
    const std::size_t whole = DisplayLength(text);
    if (whole <= length) return text;
    // What goes takes at least the positions that are too many; a mark without a width goes with its
    // character.
    std::size_t remaining = whole;
    while (!text.empty()) {
        const Utf8Character character = FirstUtf8Character(text);
        const std::size_t positions = PositionsOf(character);
        if (remaining <= length && positions > 0) break;
        remaining -= positions;
        text.remove_prefix(character.size);
    }
    return text;
}

}  // namespace Ostrel::UI::Console
