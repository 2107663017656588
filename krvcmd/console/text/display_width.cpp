#include "krvcmd/console/text/display_width.h"

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/text/safe_text.h"
#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {
namespace {

// Whether every byte takes one position.
bool IsCountedInBytes(std::string_view text) {
    return IsPrintableAscii(text) || !Platform::ReadsUtf8();
}

size_t PositionsOf(const Utf8Character& character) {
    // Control characters are shown as one "?" for each byte.
    if (!character.isWellFormed || IsControlCharacter(character)) return character.size;
    return static_cast<size_t>(Platform::CharacterWidth(character.codePoint));
}

}  // namespace

size_t DisplayLengthOfAny(std::string_view text) {
    if (!Platform::ReadsUtf8()) return text.size();
    size_t length = 0;
    while (!text.empty()) {
        const Utf8Character character = FirstUtf8Character(text);
        length += PositionsOf(character);
        text.remove_prefix(character.size);
    }
    return length;
}

std::string_view LeadingPart(std::string_view text, size_t length) {
    if (IsCountedInBytes(text)) return text.substr(0, length);
    size_t size = 0;
    size_t taken = 0;
    while (size < text.size()) {
        const Utf8Character character = FirstUtf8Character(text.substr(size));
        taken += PositionsOf(character);
        if (taken > length) break;
        size += character.size;
    }
    return text.substr(0, size);
}

std::string_view TrailingPart(std::string_view text, size_t length) {
    if (IsCountedInBytes(text)) return text.size() <= length ? text : text.substr(text.size() - length);
    const size_t whole = DisplayLength(text);
    if (whole <= length) return text;
    // What goes takes at least the positions that are too many; a mark without a width goes with its
    // character.
    size_t remaining = whole;
    while (!text.empty()) {
        const Utf8Character character = FirstUtf8Character(text);
        const size_t positions = PositionsOf(character);
        if (remaining <= length && positions > 0) break;
        remaining -= positions;
        text.remove_prefix(character.size);
    }
    return text;
}

namespace {

// Appends `part`, which takes at most `width` positions, and a blank where a wide character did not fit any
// more.
void AppendFilled(std::string& out, std::string_view part, size_t width) {
    out += part;
    out.append(width - DisplayLength(part), ' ');
}

}  // namespace

size_t AppendEnd(std::string& out, std::string_view text, size_t width) {
    const size_t lost = width > kEllipsis.size() ? kEllipsis.size() : 0;
    out += kEllipsis.substr(0, lost);
    AppendFilled(out, TrailingPart(text, width - lost), width - lost);
    return width;
}

size_t AppendBeginning(std::string& out, std::string_view text, size_t width) {
    const size_t lost = width > kEllipsis.size() ? kEllipsis.size() : 0;
    out += kEllipsis.substr(0, lost);
    const std::string_view behindLost = TrailingPart(text, DisplayLength(text) - lost);
    AppendFilled(out, LeadingPart(behindLost, width - lost), width - lost);
    return width;
}

}  // namespace Ostrel::UI::Console
