#include "tests/fake_library/script_line.h"

#include <charconv>
#include <stdexcept>

namespace krvfake {
namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    throw std::runtime_error("\\x wants two hexadecimal digits");
}

// Reads the character behind a backslash at `position` and steps over it.
char Unescape(std::string_view text, size_t& position) {
    const char c = text.at(position++);
    if (c == 'n') return '\n';
    if (c != 'x') return c;
    const int high = HexDigit(text.at(position++));
    const int low = HexDigit(text.at(position++));
    return static_cast<char>(high * 16 + low);
}

// Reads one text, quoted or not, up to a blank, the end, or (when it may be a name) "=".
std::string ReadText(std::string_view text, size_t& position, std::string_view ends) {
    std::string result;
    if (position >= text.size() || text[position] != '"') {
        while (position < text.size() && ends.find(text[position]) == std::string_view::npos) {
            result += text[position++];
        }
        return result;
    }
    ++position;
    while (position < text.size() && text[position] != '"') {
        const char c = text[position++];
        result += c == '\\' ? Unescape(text, position) : c;
    }
    if (position >= text.size()) throw std::runtime_error("a quote is not closed");
    ++position;
    return result;
}

}  // namespace

int64_t ParseNumber(std::string_view text) {
    int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) {
        throw std::runtime_error("\"" + std::string(text) + "\" is not a number");
    }
    return value;
}

std::vector<int64_t> ParseNumbers(std::string_view text, char separator) {
    std::vector<int64_t> numbers;
    for (size_t start = 0;;) {
        const size_t end = text.find(separator, start);
        numbers.push_back(ParseNumber(text.substr(start, end - start)));
        if (end == std::string_view::npos) return numbers;
        start = end + 1;
    }
}

ScriptLine::ScriptLine(std::string_view text) {
    size_t position = 0;
    while (true) {
        while (position < text.size() && (text[position] == ' ' || text[position] == '\t'))
            ++position;
        if (position >= text.size() || text[position] == '#') return;
        const bool quoted = text[position] == '"';
        std::string word = ReadText(text, position, " \t=");
        if (!quoted && position < text.size() && text[position] == '=') {
            ++position;
            m_pairs.emplace(std::move(word), ReadText(text, position, " \t"));
        } else {
            m_words.push_back(std::move(word));
        }
    }
}

const std::string& ScriptLine::Word(size_t index) const {
    if (index >= m_words.size()) throw std::runtime_error("the line lacks a word");
    return m_words[index];
}

int64_t ScriptLine::NumberWord(size_t index) const {
    return ParseNumber(Word(index));
}

std::string ScriptLine::Text(const std::string& name, std::string_view otherwise) const {
    m_read.insert(name);
    const auto [first, last] = m_pairs.equal_range(name);
    return first == last ? std::string(otherwise) : std::prev(last)->second;
}

int64_t ScriptLine::Number(const std::string& name, int64_t otherwise) const {
    return Has(name) ? ParseNumber(Text(name)) : otherwise;
}

std::vector<int64_t> ScriptLine::Numbers(const std::string& name, char separator) const {
    return Has(name) ? ParseNumbers(Text(name), separator) : std::vector<int64_t>();
}

std::vector<std::string> ScriptLine::Texts(const std::string& name) const {
    m_read.insert(name);
    std::vector<std::string> values;
    const auto [first, last] = m_pairs.equal_range(name);
    for (auto pair = first; pair != last; ++pair)
        values.push_back(pair->second);
    return values;
}

void ScriptLine::RefuseUnread() const {
    for (const auto& [name, value] : m_pairs) {
        if (!m_read.contains(name)) throw std::runtime_error("\"" + name + "\" means nothing here");
    }
}

}  // namespace krvfake
