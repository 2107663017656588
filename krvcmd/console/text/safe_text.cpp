#include "krvcmd/console/text/safe_text.h"

#include <algorithm>
#include <array>
#include <span>

#include "krvcmd/console/text/utf8.h"

namespace Ostrel::UI::Console {
namespace {

constexpr char kReplacement = '?';

// Letters of living languages have up to three marks.
constexpr int kMostMarksOnOneBase = 4;
constexpr char32_t kFirstMark = 0x300;

constexpr char32_t kJoiner = 0x200D;

struct CodePointRange {
    char32_t first;
    char32_t last;
};

// Characters that a terminal does not show but may act on.
constexpr std::array<CodePointRange, 8> kHidden{{
    {0x061C, 0x061C},    // Arabic letter mark
    {0x180E, 0x180E},    // Mongolian vowel separator
    {0x200B, 0x200F},    // blanks and joiners without a width, direction marks
    {0x2028, 0x202E},    // line and paragraph separators, embedded directions
    {0x2060, 0x206F},    // invisible operators, isolated directions
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFF9, 0xFFFB},    // annotations
    {0xE0000, 0xE007F},  // tags
}};

// Characters that emoji sequences are joined of.
constexpr std::array<CodePointRange, 5> kEmoji{{
    {0x2190, 0x21FF},    // arrows
    {0x2300, 0x23FF},    // technical signs
    {0x2600, 0x27BF},    // signs and dingbats: gender, heart, aeroplane
    {0x2B00, 0x2BFF},    // squares and arrows
    {0x1F000, 0x1FAFF},  // pictographs, skin tones
}};

bool IsIn(std::span<const CodePointRange> ranges, char32_t value) {
    return std::ranges::any_of(
        ranges, [=](const CodePointRange& range) { return value >= range.first && value <= range.last; });
}

bool IsEmoji(char32_t value) {
    return IsIn(kEmoji, value);
}

// Finds the unsafe characters of a text, as a terminal sees it that decodes UTF-8.
class CharacterScan {
  public:
    explicit CharacterScan(std::string_view text) : m_rest(text) {}

    bool IsAtEnd() const { return m_rest.empty(); }

    // Reads a character, whether it is safe, and its size in bytes.
    struct Result {
        size_t size;
        bool isSafe;
    };
    Result Next() {
        const Utf8Character character = FirstUtf8Character(m_rest);
        m_rest.remove_prefix(character.size);
        const bool isSafe = IsSafe(character);
        return {character.size, isSafe};
    }

  private:
    bool IsSafe(const Utf8Character& character) {
        const char32_t value = character.codePoint;
        if (IsMark(character)) return ++m_marks <= kMostMarksOnOneBase;
        if (value == kJoiner) return JoinsEmoji();
        m_marks = 0;
        m_base = character.isWellFormed ? value : 0;
        // A byte that belongs to no character may be a control character to the terminal.
        return !IsControlCharacter(value) && !(character.isWellFormed && IsIn(kHidden, value));
    }

    static bool IsMark(const Utf8Character& character) {
        const char32_t value = character.codePoint;
        return character.isWellFormed && value >= kFirstMark && !IsIn(kHidden, value) &&
               Platform::CharacterWidth(value) == 0;
    }

    bool JoinsEmoji() {
        const bool joins =
            IsEmoji(m_base) && !m_rest.empty() && IsEmoji(FirstUtf8Character(m_rest).codePoint);
        m_marks = 0;
        m_base = 0;
        return joins;
    }

    std::string_view m_rest;
    char32_t m_base = 0;  // the last character that is no mark
    int m_marks = 0;      // on it
};

bool IsSafeByte(char byte) {
    const char32_t character = Platform::CharacterOfByte(static_cast<uint8_t>(byte));
    return !IsControlCharacter(character) && !IsIn(kHidden, character);
}

void ReplaceUnsafeCharacters(std::string& text) {
    CharacterScan scan(text);
    for (size_t begin = 0; !scan.IsAtEnd();) {
        const auto [size, isSafe] = scan.Next();
        // The scan has left these bytes behind.
        if (!isSafe) text.replace(begin, size, size, kReplacement);
        begin += size;
    }
}

std::string SafeTerminalText(std::string_view text) {
    std::string safe(text);
    if (IsPrintableAscii(text)) return safe;
    if (Platform::TerminalMayDecodeUtf8())  // GCOVR_EXCL_BR_LINE: always, on Linux
        ReplaceUnsafeCharacters(safe);
    if (Platform::TerminalMayDecodeBytes()) {
        std::ranges::replace_if(
            safe, [](char byte) { return !IsSafeByte(byte); }, kReplacement);
    }
    return safe;
}

bool HasUnsafeCharacters(std::string_view text) {
    CharacterScan scan(text);
    while (!scan.IsAtEnd()) {
        if (!scan.Next().isSafe) return true;
    }
    return false;
}

}  // namespace

Sink SinkOf(Stream stream) {
    return Platform::IsTerminal(stream) ? Sink::Terminal : Sink::File;
}

bool NeedsReplacing(std::string_view text) {
    if (IsPrintableAscii(text)) return false;
    if (Platform::TerminalMayDecodeBytes() && !std::ranges::all_of(text, IsSafeByte)) return true;
    return Platform::TerminalMayDecodeUtf8() && HasUnsafeCharacters(text);
}

std::string SafeCellText(std::string_view text, Sink sink) {
    if (sink == Sink::Terminal) return SafeTerminalText(text);
    std::string safe(text);
    std::ranges::replace(safe, '\n', kReplacement);
    return safe;
}

std::string SafeText(std::string_view text, Stream stream) {
    return SinkOf(stream) == Sink::Terminal ? SafeTerminalText(text) : std::string(text);
}

}  // namespace Ostrel::UI::Console
