#include "tools/expectations/expectation_line.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace embedded::tools {
namespace {

bool IsBlankCharacter(char character) {
    return character == ' ' || character == '\t' || character == '\r';
}

// The quoted text that starts behind `position`, which moves behind its end.
std::string QuotedText(std::string_view line, size_t& position) {
    std::string text;
    while (position < line.size()) {
        char character = line[position++];
        if (character == '"') {
            if (position < line.size() && !IsBlankCharacter(line[position]))
                throw LineMistake("a blank is missing behind the closing quotation mark");
            return text;
        }
        const bool isEscape =
            character == '\\' && position < line.size() && (line[position] == '"' || line[position] == '\\');
        if (isEscape) character = line[position++];
        text += character;
    }
    throw LineMistake("the closing quotation mark is missing");
}

}  // namespace

std::vector<std::string> SplitLine(std::string_view line) {
    std::vector<std::string> words;
    for (size_t position = 0; position < line.size();) {
        if (IsBlankCharacter(line[position])) {
            ++position;
            continue;
        }
        if (line[position] == '#') break;
        if (line[position] == '"') {
            words.push_back(QuotedText(line, ++position));
            continue;
        }
        const auto* const end =
            std::find_if(line.begin() + static_cast<std::ptrdiff_t>(position), line.end(), IsBlankCharacter);
        words.emplace_back(line.begin() + static_cast<std::ptrdiff_t>(position), end);
        position = static_cast<size_t>(end - line.begin());
    }
    return words;
}

bool LineReader::NextIsNumber() const {
    return HasMore() && !m_words[m_next].empty() &&
           m_words[m_next].find_first_not_of("0123456789") == std::string::npos;
}

std::string LineReader::Word(const char* what) {
    if (!HasMore()) throw LineMistake(std::string(what) + " is missing");
    return m_words[m_next++];
}

int64_t LineReader::Number(const char* what, int64_t lowest) {
    const std::string word = Word(what);
    int64_t number = 0;
    const char* end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, number);
    const bool isNumber = result.ec == std::errc() && result.ptr == end;
    if (!isNumber || number < lowest || number > std::numeric_limits<int32_t>::max())
        throw LineMistake("\"" + word + "\" is not " + what);
    return number;
}

void LineReader::End() const {
    if (HasMore()) throw LineMistake("\"" + m_words[m_next] + "\" is too much");
}

}  // namespace embedded::tools
