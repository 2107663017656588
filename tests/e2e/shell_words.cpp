#include "tests/e2e/shell_words.h"

#include <stdexcept>

namespace e2e {

std::vector<std::string> SplitShellWords(std::string_view line) {
    std::vector<std::string> words;
    bool inWord = false;
    char quote = '\0';
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote == '\0' && c == ' ') {
            inWord = false;
            continue;
        }
        if (!inWord) words.emplace_back();
        inWord = true;
        if (c == quote) {
            quote = '\0';
        } else if (quote == '\0' && (c == '"' || c == '\'')) {
            quote = c;
        } else if (c == '\\' && quote != '\'' && i + 1 < line.size()) {
            words.back() += line[++i];
        } else {
            words.back() += c;
        }
    }
    if (quote != '\0') throw std::runtime_error("a quote is not closed");
    return words;
}

}  // namespace e2e
