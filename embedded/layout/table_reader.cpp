#include "embedded/layout/table_reader.h"

#include <charconv>
#include <limits>

namespace embedded {
namespace {

std::string Range(int64_t lowest, int64_t highest) {
    return "is not from " + std::to_string(lowest) + " to " + std::to_string(highest);
}

std::optional<std::string> FromHex(std::string_view hex) {
    if (hex.size() % 2 != 0) return std::nullopt;
    std::string bytes;
    for (size_t position = 0; position < hex.size(); position += 2) {
        unsigned value = 0;
        const char* end = hex.data() + position + 2;
        const auto result = std::from_chars(hex.data() + position, end, value, 16);
        if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
        bytes += static_cast<char>(value);
    }
    return bytes;
}

}  // namespace

int TableReader::LineOf(const toml::node& node) {
    return static_cast<int>(node.source().begin.line);
}

std::string TableReader::PathOf(std::string_view field) const {
    if (field.empty()) return m_path;
    return m_path.empty() ? std::string(field) : m_path + "." + std::string(field);
}

void TableReader::Complain(std::string_view field, const toml::node* node, std::string text) {
    m_problems.push_back({node == nullptr ? GetLine() : LineOf(*node), PathOf(field), std::move(text)});
}

const toml::node* TableReader::Node(std::string_view field) {
    m_asked.emplace(field);
    return m_table.get(field);
}

void TableReader::Require(std::string_view field) {
    if (!Has(field)) Complain(field, nullptr, "is missing");
}

void TableReader::Flag(std::string_view field, bool& target) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    if (const auto value = node->value_exact<bool>()) {
        target = *value;
    } else {
        Complain(field, node, "is neither true nor false");
    }
}

void TableReader::Number(std::string_view field, int64_t lowest, int64_t highest, int32_t& target) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    const auto value = node->value_exact<int64_t>();
    if (!value.has_value()) {
        Complain(field, node, "is not a whole number");
    } else if (*value < lowest || *value > highest) {
        Complain(field, node, Range(lowest, highest));
    } else {
        target = static_cast<int32_t>(*value);
    }
}

void TableReader::Unsigned(std::string_view field, uint32_t& target) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    constexpr int64_t kHighest = std::numeric_limits<uint32_t>::max();
    const auto value = node->value_exact<int64_t>();
    if (!value.has_value()) {
        Complain(field, node, "is not a whole number");
    } else if (*value < 0 || *value > kHighest) {
        Complain(field, node, Range(0, kHighest));
    } else {
        target = static_cast<uint32_t>(*value);
    }
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
    Complain(field, node, "is not a whole number from 0 to 18446744073709551615");
}

std::optional<std::string> TableReader::TextOf(std::string_view field, const toml::node& node, size_t limit) {
    std::optional<std::string> text = node.value_exact<std::string>();
    if (const toml::table* table = node.as_table(); table != nullptr && table->size() == 1) {
        if (const auto hex = (*table)["hex"].value_exact<std::string_view>()) text = FromHex(*hex);
    }
    if (!text.has_value()) {
        Complain(field, &node, "is neither a text nor { hex = \"...\" }");
        return std::nullopt;
    }
    if (text->size() > limit) {
        Complain(field, &node,
                 "has " + std::to_string(text->size()) + " bytes, at most " + std::to_string(limit) +
                     " are allowed");
        return std::nullopt;
    }
    if (text->find('\0') != std::string::npos) {
        Complain(field, &node, "holds a zero byte");
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
    std::string text = "is none of";
    const char* separator = " ";
    for (const Word& word : words) {
        text.append(separator).append("\"").append(word.word).append("\"");
        separator = ", ";
    }
    Complain(field, node, std::move(text));
}

std::vector<int32_t> TableReader::Numbers(std::string_view field) {
    std::vector<int32_t> numbers;
    const toml::node* node = Node(field);
    if (node == nullptr) return numbers;
    const toml::array* list = node->as_array();
    if (list == nullptr) {
        Complain(field, node, "is not a list of numbers");
        return numbers;
    }
    constexpr int64_t kHighest = std::numeric_limits<int32_t>::max();
    for (const toml::node& element : *list) {
        const auto value = element.value_exact<int64_t>();
        if (value.has_value() && *value >= 1 && *value <= kHighest) {
            numbers.push_back(static_cast<int32_t>(*value));
        } else {
            Complain(field, &element, "holds something other than a number from 1");
        }
    }
    return numbers;
}

std::vector<std::string> TableReader::Texts(std::string_view field, size_t limit) {
    std::vector<std::string> texts;
    const toml::node* node = Node(field);
    if (node == nullptr) return texts;
    const toml::array* list = node->as_array();
    if (list == nullptr) {
        Complain(field, node, "is not a list of texts");
        return texts;
    }
    for (const toml::node& element : *list) {
        if (auto text = TextOf(field, element, limit)) texts.push_back(std::move(*text));
    }
    return texts;
}

void TableReader::Tables(std::string_view field, const std::function<void(TableReader&)>& read) {
    const toml::node* node = Node(field);
    if (node == nullptr) return;
    const toml::array* list = node->as_array();
    if (list == nullptr) {
        Complain(field, node, "is not a list of tables");
        return;
    }
    size_t position = 0;
    for (const toml::node& element : *list) {
        const std::string path = PathOf(field) + "[" + std::to_string(++position) + "]";
        const toml::table* table = element.as_table();
        if (table == nullptr) {
            m_problems.push_back({LineOf(element), path, "is not a table"});
            continue;
        }
        TableReader reader(*table, path, m_problems);
        read(reader);
        reader.Finish();
    }
}

void TableReader::Finish() {
    for (const auto& [key, node] : m_table) {
        if (!m_asked.contains(key.str())) Complain(key.str(), &node, "is not a field of the layout format");
    }
}

}  // namespace embedded
