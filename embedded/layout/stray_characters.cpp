#include "embedded/layout/stray_characters.h"

#include <algorithm>

namespace embedded {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kLongBasic = R"(""")";
constexpr std::string_view kLongLiteral = "'''";

bool IsAscii(char character) {
    return static_cast<unsigned char>(character) < 0x80;
}

// Goes through a TOML text token by token. Invalid tokens do not matter: the TOML library stops at them.
class TokenScanner {
  public:
    explicit TokenScanner(std::string_view text) : m_rest(text) {
        if (m_rest.starts_with(kByteOrderMark)) Skip(kByteOrderMark.size());
    }

    // Consumes one token; false when it holds a stray character.
    bool TakeToken() {
        if (m_rest.starts_with(kLongBasic)) return TakeLongBasic();
        if (m_rest.starts_with(kLongLiteral)) return TakeUpTo(m_rest.find(kLongLiteral, 3), 3);
        switch (m_rest.front()) {
            case '#':
                return TakeUpTo(m_rest.find('\n'), 0);
            case '\'':
                return TakeUpTo(m_rest.find_first_of("'\n", 1), 1);
            case '"':
                return TakeBasic();
            default:
                if (!IsAscii(m_rest.front())) return false;
                Skip(1);
                return true;
        }
    }

    bool AtEnd() const { return m_rest.empty(); }
    int Line() const { return m_line; }

  private:
    void Skip(size_t count) {
        const std::string_view skipped = m_rest.substr(0, count);
        m_line += static_cast<int>(std::ranges::count(skipped, '\n'));
        m_rest.remove_prefix(skipped.size());
    }

    // Up to the place and `more` characters behind it, or to the end of the text for npos.
    bool TakeUpTo(size_t place, size_t more) {
        Skip(place == std::string_view::npos ? m_rest.size() : place + more);
        return true;
    }

    bool TakeBasic() {
        size_t place = 1;
        while (place < m_rest.size() && m_rest[place] != '"' && m_rest[place] != '\n')
            place += m_rest[place] == '\\' ? 2 : 1;
        return TakeUpTo(place, 1);
    }

    bool TakeLongBasic() {
        Skip(kLongBasic.size());
        while (!AtEnd()) {
            if (m_rest.starts_with(kLongBasic)) return TakeUpTo(0, kLongBasic.size());
            const bool isEscape = m_rest.front() == '\\';
            Skip(1);
            if (!isEscape) continue;
            const size_t next = m_rest.find_first_not_of(" \t\r\n");
            Skip(std::min(next, m_rest.size()));
            if (!AtEnd() && !IsAscii(m_rest.front())) return false;
            // A quotation mark directly behind the backslash does not end the string.
            if (next == 0) Skip(1);
        }
        return true;
    }

    std::string_view m_rest;
    int m_line = 1;
};

}  // namespace

std::optional<Problem> FindStrayCharacter(std::string_view text) {
    TokenScanner scanner(text);
    while (!scanner.AtEnd()) {
        if (!scanner.TakeToken()) return Problem{scanner.Line(), "", "unexpected non-ASCII character"};
    }
    return std::nullopt;
}

}  // namespace embedded
