#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace krvfake {

// One line of a script, taken apart: plain words and name=value pairs, separated by blanks. A value
// or a word may stand in double quotes, in which \" \\ \n and \xHH are known.
//
//     jukebox 8 name="My Box" enabled=0      words: jukebox, 8     pairs: name, enabled
class ScriptLine {
  public:
    explicit ScriptLine(std::string_view text);

    bool IsEmpty() const { return m_words.empty() && m_pairs.empty(); }
    const std::vector<std::string>& Words() const { return m_words; }
    // Throws when there is no such word.
    const std::string& Word(size_t index) const;
    int64_t NumberWord(size_t index) const;

    bool Has(const std::string& name) const { return m_pairs.contains(name); }
    // The value, or the default when the pair is missing; the last one of several.
    std::string Text(const std::string& name, std::string_view otherwise = "") const;
    int64_t Number(const std::string& name, int64_t otherwise) const;
    // "8/0/1/0" or "10,20": decimal numbers with one separator.
    std::vector<int64_t> Numbers(const std::string& name, char separator) const;
    // All values of a pair that may be given several times.
    std::vector<std::string> Texts(const std::string& name) const;

    // Throws when a pair was given that nobody has asked for: a misspelt name must not pass.
    void RefuseUnread() const;

  private:
    std::vector<std::string> m_words;
    std::multimap<std::string, std::string> m_pairs;
    mutable std::set<std::string> m_read;
};

int64_t ParseNumber(std::string_view text);
std::vector<int64_t> ParseNumbers(std::string_view text, char separator);

}  // namespace krvfake
