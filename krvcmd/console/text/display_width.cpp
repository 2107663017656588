#include "krvcmd/console/text/display_width.h"

#include "krvcmd/console/platform/console_platform.h"

namespace Ostrel::UI::Console {
namespace {

// Whether every byte takes one position.
bool IsCountedInBytes(std::string_view text) {
    return IsAscii(text) || !Platform::ReadsUtf8();
}

size_t PositionsOf(const Utf8Character& character) {
    // Control characters are shown as one "?" for each byte.
    if (!character.isWellFormed || IsControlCharacter(character.codePoint)) return character.size;
    return static_cast<size_t>(Platform::CharacterWidth(character.codePoint));
}

// The positions at the beginning of a text of `width` positions that the ellipsis takes.
size_t EllipsisLength(size_t width) {
    return width > kEllipsis.size() ? kEllipsis.size() : 0;
}

// Appends `part`, which takes at most `width` positions, and a blank where a wide character was cut off.
void AppendFilled(TextLine& out, std::string_view part, size_t width) {
    out.Append(part);
    out.AppendBlanks(width - DisplayLength(part));
}

}  // namespace

size_t CountPositions(std::string_view text) {
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
    size_t remaining = DisplayLength(text);
    if (remaining <= length) return text;
    // A combining mark, which takes no position, is removed with its character.
    while (!text.empty()) {
        const Utf8Character character = FirstUtf8Character(text);
        const size_t positions = PositionsOf(character);
        if (remaining <= length && positions > 0) break;
        remaining -= positions;
        text.remove_prefix(character.size);
    }
    return text;
}

size_t AppendElidedEnd(TextLine& out, std::string_view text, size_t width) {
    const size_t elided = EllipsisLength(width);
    out.Append(kEllipsis.substr(0, elided));
    AppendFilled(out, TrailingPart(text, width - elided), width - elided);
    return width;
}

size_t AppendElidedBeginning(TextLine& out, std::string_view text, size_t width) {
    const size_t elided = EllipsisLength(width);
    out.Append(kEllipsis.substr(0, elided));
    const std::string_view rest = TrailingPart(text, DisplayLength(text) - elided);
    AppendFilled(out, LeadingPart(rest, width - elided), width - elided);
    return width;
}

}  // namespace Ostrel::UI::Console
