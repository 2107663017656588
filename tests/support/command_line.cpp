#include "tests/support/command_line.h"

#include <stdexcept>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/parsing/parser.h"

namespace krvcmd::test {
namespace {

std::string Serialise(const Parameter& parameter) {
    std::string text(parameter.node->keyword);
    if (parameter.valueKind == ValueKind::None) return text;
    if (parameter.valueKind == ValueKind::Text) return text + "=\"" + parameter.text + "\"";
    std::string separator = "={";
    for (const NumberRange& range : parameter.ranges) {
        text += separator + std::to_string(range.from);
        if (range.writtenAsRange) text += "-" + std::to_string(range.to);
        separator = ",";
    }
    return text + "}";
}

const KeywordNode* FindNode(KeywordNode::Table table, std::string_view keyword) {
    for (const KeywordNode* node : table) {
        if (node->keyword == keyword) return node;
    }
    throw std::invalid_argument("the grammar has no keyword " + std::string(keyword));
}

}  // namespace

std::string Serialise(const ParameterList& line) {
    std::string text;
    for (const Parameter& option : line.options)
        text += Serialise(option) + " ";
    text += ":";
    if (line.command != nullptr) text += " " + std::string(line.command->keyword);
    for (const Parameter& parameter : line.parameters)
        text += " " + Serialise(parameter);
    return text;
}

std::string Spelled(const Words& words) {
    std::string text;
    for (const char* word : words)
        text.append("[").append(word).append("]");
    return text;
}

std::string ParsedAs(const Words& words) {
    ParameterList line;
    const Status status = ParseCommandLine(words, line);
    return status.IsOk() ? Serialise(line) : Text(status);
}

std::string Text(const Status& status) {
    if (status.IsOk()) return "OK";
    const std::string code = "error " + std::to_string(status.Code());
    return status.IsServiceError() ? "service " + code + ": " + status.Message() : code;
}

const KeywordNode& Node(std::string_view keyword) {
    const size_t dot = keyword.find('.');
    const bool isParameter = dot != std::string_view::npos && dot != 0;
    const KeywordNode* node =
        FindNode(CommandGrammar::TopLevel(), keyword.substr(0, isParameter ? dot : keyword.size()));
    return isParameter ? *FindNode(node->children, keyword.substr(dot + 1)) : *node;
}

KeywordNode MakeNode(std::string_view keyword, KeywordKind kind) {
    KeywordNode node;
    node.keyword = keyword;
    node.kind = kind;
    return node;
}

}  // namespace krvcmd::test
