#include "embedded/layout/long_arrays.h"

#include <algorithm>

namespace embedded {
namespace {

constexpr size_t kLongFrom = size_t{64} * 1024;   // bytes
constexpr size_t kPieceSize = size_t{64} * 1024;  // bytes, at least

// Goes through a text by its brackets, commas and equals signs, past strings and comments.
class BracketScanner {
  public:
    explicit BracketScanner(std::string_view text) : m_text(text) {}

    // The next character that is neither blank nor part of a comment; a string counts as its quotation mark.
    // NUL at the end.
    char Next() {
        while (m_position < m_text.size()) {
            m_begin = m_position;
            m_beginLine = m_line;
            const char character = m_text[m_position];
            if (character == '#') {
                SkipTo(m_text.find('\n', m_position));
            } else if (character == '"' || character == '\'') {
                SkipString(character);
                return character;
            } else {
                SkipTo(m_position + 1);
                if (character != ' ' && character != '\t' && character != '\r' && character != '\n')
                    return character;
            }
        }
        m_begin = m_position;
        return '\0';
    }

    size_t GetBegin() const { return m_begin; }
    int GetBeginLine() const { return m_beginLine; }
    size_t GetEnd() const { return m_position; }
    int GetEndLine() const { return m_line; }

  private:
    void SkipTo(size_t end) {
        end = std::min(end, m_text.size());
        m_line += static_cast<int>(std::ranges::count(m_text.substr(m_position, end - m_position), '\n'));
        m_position = end;
    }

    void SkipString(char quote) {
        const std::string triple(3, quote);
        const bool isLong = m_text.substr(m_position).starts_with(triple);
        const std::string_view closing = std::string_view(triple).substr(0, isLong ? 3 : 1);
        size_t end = m_position + closing.size();
        while (end < m_text.size() && !m_text.substr(end).starts_with(closing)) {
            if (!isLong && m_text[end] == '\n') return SkipTo(end);
            end += quote == '"' && m_text[end] == '\\' ? 2 : 1;
        }
        end += closing.size();
        // Up to two quotation marks before the closing ones belong to the string.
        for (int more = 0; isLong && more < 2 && end < m_text.size() && m_text[end] == quote; ++more)
            ++end;
        SkipTo(end);
    }

    std::string_view m_text;
    size_t m_position = 0;
    int m_line = 1;
    size_t m_begin = 0;  // of the last character
    int m_beginLine = 1;
};

bool Opens(char character) {
    return character == '[' || character == '{';
}

bool Closes(char character) {
    return character == ']' || character == '}';
}

}  // namespace

LongArrays::LongArrays(std::string_view text) : m_text(text) {
    BracketScanner scanner(text);
    char before = '\0';
    for (char next = scanner.Next(); next != '\0'; before = next, next = scanner.Next()) {
        if (next != '[' || before != '=') continue;
        const int line = scanner.GetBeginLine();
        Array array;
        array.begin = scanner.GetEnd();
        size_t start = array.begin;
        int startLine = scanner.GetEndLine();
        const auto cut = [&] {
            array.pieces.push_back({startLine, text.substr(start, scanner.GetBegin() - start)});
            start = scanner.GetEnd();
            startLine = scanner.GetEndLine();
        };
        next = scanner.Next();
        const bool hasTables = next == '{';
        for (int depth = 1; next != '\0'; next = scanner.Next()) {
            if (Opens(next)) ++depth;
            if (Closes(next) && --depth == 0) break;
            if (next == ',' && depth == 1 && scanner.GetBegin() - start >= kPieceSize) cut();
        }
        if (next == '\0') return;
        array.end = scanner.GetBegin();
        cut();
        if (hasTables && array.end - array.begin >= kLongFrom) m_arrays.emplace(line, std::move(array));
    }
}

std::string LongArrays::GetRest() const {
    std::string rest;
    size_t position = 0;
    for (const auto& [line, array] : m_arrays) {
        rest += m_text.substr(position, array.begin - position);
        const std::string_view elements = m_text.substr(array.begin, array.end - array.begin);
        rest.append(static_cast<size_t>(std::ranges::count(elements, '\n')), '\n');
        position = array.end;
    }
    rest += m_text.substr(position);
    return rest;
}

std::vector<LongArrays::Piece> LongArrays::Take(int line) {
    const auto found = m_arrays.find(line);
    if (found == m_arrays.end()) return {};
    found->second.isTaken = true;
    return found->second.pieces;
}

bool LongArrays::AreAllTaken() const {
    return std::ranges::all_of(m_arrays, [](const auto& entry) { return entry.second.isTaken; });
}

}  // namespace embedded
