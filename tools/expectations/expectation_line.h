#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::tools {

// Why a line cannot be read.
class LineMistake : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The words of a line: separated by blanks, or between quotation marks, in which \" and \\ stand for a
// quotation mark and a backslash. A "#" at the start of a word begins a comment.
std::vector<std::string> SplitLine(std::string_view line);

// Takes the words of a line one by one. Each function throws LineMistake where the line has something else.
class LineReader {
  public:
    explicit LineReader(std::vector<std::string> words) : m_words(std::move(words)) {}

    bool HasMore() const { return m_next < m_words.size(); }
    bool NextIsNumber() const;

    // `what` names what is expected, such as "a volume ID".
    std::string Word(const char* what);
    // From `lowest` to 2147483647.
    int64_t Number(const char* what, int64_t lowest = 0);
    void End() const;

  private:
    std::vector<std::string> m_words;
    size_t m_next = 0;
};

}  // namespace embedded::tools
