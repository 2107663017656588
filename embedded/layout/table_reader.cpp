#include "embedded/layout/table_reader.h"

#include <charconv>
#include <limits>

#include "embedded/layout/stray_characters.h"
#include "embedded/layout/text_encoding.h"

namespace embedded {

int TableReader::LineOf(const toml::node& node) {
    return static_cast<int>(node.source().begin.line);
}

std::string TableReader::PathOf(std::string_view field) const {
    if (field.empty()) return m_path;
    return m_path.empty() ? std::string(field) : m_path + "." + std::string(field);
}

void TableReader::AddProblem(std::string_view field, const toml::node* node, std::string text) {
    m_problems.push_back({node == nullptr ? GetLine() : LineOf(*node), PathOf(field), std::move(text)});
}

const toml::node* TableReader::Node(std::string_view field) {
    m_asked.emplace(field);
    return m_table.get(field);
}

void TableReader::Require(std::string_view field) {
    if (!Has(field)) AddProblem(field, nullptr, "is missing");
}

void TableReader::RequireFormat(int64_t version) {
    constexpr std::string_view kField = "format";
    Require(kField);
    const std::optional<int64_t> format =
        Integer(kField, std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max());
    if (format.has_value() && *format != version)
        AddProblem(kField, Node(kField), "must be " + std::to_string(version));
}

void TableReader::Flag(std::string_view field, bool& target) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    if (const auto value = node->value_exact<bool>()) {
        target = *value;
    } else {
        AddProblem(field, node, "must be true or false");
    }
}

std::optional<int64_t> TableReader::Integer(std::string_view field, int64_t lowest, int64_t highest) {
    const toml::node* node = Node(field);
    if (node == nullptr) return std::nullopt;
    const auto value = node->value_exact<int64_t>();
    if (!value.has_value()) {
        AddProblem(field, node, "must be an integer");
        return std::nullopt;
    }
    if (*value < lowest || *value > highest) {
        AddProblem(field, node, "must be from " + std::to_string(lowest) + " to " + std::to_string(highest));
        return std::nullopt;
    }
    return value;
}

void TableReader::Number(std::string_view field, int64_t lowest, int64_t highest, int32_t& target) {
    if (const auto value = Integer(field, lowest, highest)) target = static_cast<int32_t>(*value);
}

void TableReader::Unsigned(std::string_view field, uint32_t& target) {
    const auto value = Integer(field, 0, std::numeric_limits<uint32_t>::max());
    if (value.has_value()) target = static_cast<uint32_t>(*value);
}

void TableReader::Huge(std::string_view field, uint64_t& target) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    if (const auto value = node->value_exact<int64_t>(); value.has_value() && *value >= 0) {
        target = static_cast<uint64_t>(*value);
        return;
    }
    if (const auto digits = node->value_exact<std::string_view>()) {
        const char* end = digits->data() + digits->size();
        const auto result = std::from_chars(digits->data(), end, target);
        if (result.ec == std::errc() && result.ptr == end) return;
    }
    AddProblem(field, node, "must be an integer from 0 to 18446744073709551615");
}

std::optional<std::string> TableReader::TextOf(std::string_view field, const toml::node& node, size_t limit) {
    std::optional<std::string> text = node.value_exact<std::string>();
    if (const toml::table* table = node.as_table(); table != nullptr && table->size() == 1) {
        if (const auto hex = (*table)["hex"].value_exact<std::string_view>()) text = FromHex(*hex);
    }
    if (!text.has_value()) {
        AddProblem(field, &node, "must be a string or { hex = \"...\" }");
        return std::nullopt;
    }
    if (text->size() > limit) {
        AddProblem(
            field, &node,
            "is " + std::to_string(text->size()) + " bytes long; the limit is " + std::to_string(limit));
        return std::nullopt;
    }
    if (text->find('\0') != std::string::npos) {
        AddProblem(field, &node, "contains a NUL byte");
        return std::nullopt;
    }
    return text;
}

void TableReader::Text(std::string_view field, size_t limit, std::string& target) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    if (auto text = TextOf(field, *node, limit)) target = std::move(*text);
}

void TableReader::Choice(std::string_view field, std::span<const Word> words, int32_t& target) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    if (const auto word = node->value_exact<std::string_view>()) {
        if (const auto value = ValueOf(words, *word)) {
            target = *value;
            return;
        }
    }
    std::string text = "must be one of";
    const char* separator = " ";
    for (const Word& word : words) {
        text.append(separator).append("\"").append(word.word).append("\"");
        separator = ", ";
    }
    AddProblem(field, node, std::move(text));
}

const toml::array* TableReader::Array(std::string_view field, std::string_view elements) {
    const toml::node* node = Node(field);
    if (node == nullptr) return nullptr;
    const toml::array* list = node->as_array();
    if (list == nullptr) AddProblem(field, node, "must be an array of " + std::string(elements));
    return list;
}

std::vector<int32_t> TableReader::Numbers(std::string_view field) {
    std::vector<int32_t> numbers;
    const toml::array* list = Array(field, "integers");
    if (list == nullptr) return numbers;
    constexpr int64_t kHighestNumber = std::numeric_limits<int32_t>::max();
    for (const toml::node& element : *list) {
        const auto value = element.value_exact<int64_t>();
        if (value.has_value() && *value >= 1 && *value <= kHighestNumber) {
            numbers.push_back(static_cast<int32_t>(*value));
        } else {
            AddProblem(field, &element, "must contain only integers from 1 up");
        }
    }
    return numbers;
}

std::vector<std::string> TableReader::Texts(std::string_view field, size_t limit) {
    std::vector<std::string> texts;
    const toml::array* list = Array(field, "strings");
    if (list == nullptr) return texts;
    for (const toml::node& element : *list) {
        if (auto text = TextOf(field, element, limit)) texts.push_back(std::move(*text));
    }
    return texts;
}

void TableReader::Tables(std::string_view field, const std::function<void(TableReader&)>& read) {
    const toml::array* list = Array(field, "tables");
    if (list == nullptr) return;
    size_t position = 0;
    ReadElements(field, *list, position, m_origin, read);
    if (m_origin.arrays == nullptr) return;
    for (const LongArrays::Piece& piece : m_origin.arrays->Take(LineOf(*list))) {
        ReadToml("e = [" + std::string(piece.elements) + "\n]", m_problems, [&](TableReader& reader) {
            ReadElements(field, *reader.Node("e")->as_array(), position, Origin{piece.line - 1, nullptr},
                         read);
        });
    }
}

void TableReader::ReadElements(std::string_view field, const toml::array& list, size_t& position,
                               const Origin& origin, const ReadTable& read) {
    for (const toml::node& element : list) {
        const std::string path = PathOf(field) + "[" + std::to_string(++position) + "]";
        const toml::table* table = element.as_table();
        if (table == nullptr) {
            m_problems.push_back({LineOf(element), path, "must be a table"});
            continue;
        }
        TableReader reader(*table, path, m_problems);
        reader.m_origin = origin;
        read(reader);
        reader.RejectUnknownFields();
    }
}

void TableReader::RejectUnknownFields() {
    for (const auto& [key, node] : m_table) {
        if (!m_asked.contains(key.str())) AddProblem(key.str(), &node, "is not a known field");
    }
}

void ReadToml(std::string_view text, std::vector<Problem>& problems,
              const std::function<void(TableReader&)>& read) {
    if (const std::optional<Problem> stray = FindStrayCharacter(text)) {
        problems.push_back(*stray);
        return;
    }
    try {
        const toml::table table = toml::parse(text);
        TableReader reader(table, "", problems);
        read(reader);
    } catch (const toml::parse_error& failure) {
        problems.push_back(
            {static_cast<int>(failure.source().begin.line), "", std::string(failure.description())});
    }
}

}  // namespace embedded
