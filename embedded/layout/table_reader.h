// Reads the fields of one table of a layout file, notes what is wrong with them, and what is in
// the table that nobody asked for.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/layout/layout_reader.h"
#include "embedded/layout/toml.h"
#include "embedded/model/farm_words.h"

namespace embedded {

class TableReader {
  public:
    // The path is that of the table, for messages: "jukebox[2].drive[1]"; empty for the whole file.
    TableReader(const toml::table& table, std::string path, std::vector<Problem>& problems)
        : m_table(table), m_path(std::move(path)), m_problems(problems) {}

    int GetLine() const { return LineOf(m_table); }
    bool Has(std::string_view field) const { return m_table.contains(field); }

    // Each leaves the target as it is when the field is not there or is wrong.
    void Flag(std::string_view field, bool& target);
    void Number(std::string_view field, int64_t lowest, int64_t highest, int32_t& target);
    void Unsigned(std::string_view field, uint32_t& target);
    // A whole number, or a text of digits where it is above what a TOML number holds.
    void Huge(std::string_view field, uint64_t& target);
    // A text, or { hex = "..." } for one that is not UTF-8; at most `limit` bytes, none of them 0.
    void Text(std::string_view field, size_t limit, std::string& target);
    // One of the words.
    void Choice(std::string_view field, std::span<const Word> words, int32_t& target);
    // A list of numbers from 1.
    std::vector<int32_t> Numbers(std::string_view field);
    // A list of texts.
    std::vector<std::string> Texts(std::string_view field, size_t limit);
    // Calls `read` with each table of a list of tables.
    void Tables(std::string_view field, const std::function<void(TableReader&)>& read);

    // The node itself, for what takes more than one form; null when it is not there.
    const toml::node* Node(std::string_view field);

    void Require(std::string_view field);
    void Complain(std::string_view field, const toml::node* node, std::string text);
    std::string PathOf(std::string_view field) const;
    std::vector<Problem>& GetProblems() { return m_problems; }

    // Complains about every field that was never asked for.
    void Finish();

    static int LineOf(const toml::node& node);

  private:
    std::optional<std::string> TextOf(std::string_view field, const toml::node& node, size_t limit);

    const toml::table& m_table;
    std::string m_path;
    std::vector<Problem>& m_problems;
    std::set<std::string, std::less<>> m_asked;
};

}  // namespace embedded
