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
#include "embedded/layout/long_arrays.h"
#include "embedded/model/farm_words.h"

#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_UNRELEASED_FEATURES 0
// Release 3.3 asserts what some invalid texts break ("a = [ }") and then rejects them like any other.
#define TOML_ASSERT(condition) static_cast<void>(0)
#include <toml++/toml.h>

namespace embedded {

// Reads the fields of one table of a layout file. Adds a problem for each field of another type or out of
// range, and for each one that nobody asked for.
class TableReader {
  public:
    // The path is that of the table, for messages: "jukebox[2].drive[1]"; empty for the whole file.
    TableReader(const toml::table& table, std::string path, std::vector<Problem>& problems)
        : m_table(table), m_path(std::move(path)), m_problems(problems) {}

    // The arrays that were taken out of the text of this table and of all within it.
    void SetLongArrays(LongArrays& arrays) { m_origin.arrays = &arrays; }

    int GetLine() const { return m_origin.linesBefore + LineOf(m_table); }
    bool Has(std::string_view field) const { return m_table.contains(field); }

    // The integer of a field; nothing when it is missing or invalid.
    std::optional<int64_t> Integer(std::string_view field, int64_t lowest, int64_t highest);

    // Each leaves the target as it is when the field is missing or invalid.
    void Flag(std::string_view field, bool& target);
    void Number(std::string_view field, int64_t lowest, int64_t highest, int32_t& target);
    void Unsigned(std::string_view field, uint32_t& target);
    // An integer, or a string of digits for one that is above the range of TOML.
    void Huge(std::string_view field, uint64_t& target);
    // A string, or { hex = "..." } for one that is not UTF-8; at most `limit` bytes, none of them 0.
    void Text(std::string_view field, size_t limit, std::string& target);
    // One of the words.
    void Choice(std::string_view field, std::span<const Word> words, int32_t& target);
    // An array of integers from 1 up.
    std::vector<int32_t> Numbers(std::string_view field);
    // An array of strings.
    std::vector<std::string> Texts(std::string_view field, size_t limit);
    // Calls `read` with each table of an array of tables.
    void Tables(std::string_view field, const std::function<void(TableReader&)>& read);

    // The node itself, for a field with several forms; null when it is missing.
    const toml::node* Node(std::string_view field);

    void Require(std::string_view field);
    // The field "format", which tells the version of the file's format.
    void RequireFormat(int64_t version);
    // A null node stands for the line of the table.
    void AddProblem(std::string_view field, const toml::node* node, std::string text);
    std::string PathOf(std::string_view field) const;
    std::vector<Problem>& GetProblems() { return m_problems; }

    // Adds a problem for every field that was never asked for.
    void RejectUnknownFields();

    static int LineOf(const toml::node& node);

  private:
    // The array of a field; null when it is missing or no array. `elements` is for the message.
    const toml::array* Array(std::string_view field, std::string_view elements);
    std::optional<std::string> TextOf(std::string_view field, const toml::node& node, size_t limit);

    // The text that a table was parsed from.
    struct Origin {
        int linesBefore = 0;           // the file's lines before it
        LongArrays* arrays = nullptr;  // that were taken out of it
    };

    using ReadTable = std::function<void(TableReader&)>;
    void ReadElements(std::string_view field, const toml::array& list, size_t& position, const Origin& origin,
                      const ReadTable& read);

    const toml::table& m_table;
    Origin m_origin;
    std::string m_path;
    std::vector<Problem>& m_problems;
    std::set<std::string, std::less<>> m_asked;
};

// Parses a TOML text and calls `read` with its table. A text that is not TOML adds one problem: the first.
void ReadToml(std::string_view text, std::vector<Problem>& problems,
              const std::function<void(TableReader&)>& read);

}  // namespace embedded
