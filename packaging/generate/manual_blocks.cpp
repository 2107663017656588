#include "packaging/generate/manual_blocks.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "embedded/model/farm_words.h"
#include "embedded/model/media_types.h"
#include "krvcmd/console/query/column_catalogue.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/report/help_table.h"
#include "krvcmd/service/sdk/codes.h"
#include "packaging/generate/client_interface.h"
#include "packaging/generate/completion_rows.h"
#include "packaging/generate/fill_template.h"
#include "packaging/generate/manual_text.h"

namespace krvcmd {
namespace {

using std::string_view;

bool IsAddress(string_view keyword) {
    return std::ranges::find(AddressKeywords(), keyword) != AddressKeywords().end();
}

const KeywordNode& CommandNode(string_view command) {
    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        if (node->kind == KeywordKind::Command && node->keyword == command) return *node;
    }
    throw std::runtime_error("no such command: " + std::string(command));
}

const HelpEntry& HelpOf(string_view command) {
    for (const HelpEntry& entry : HelpTable()) {
        if (entry.node != nullptr && entry.node->keyword == command) return entry;
    }
    throw std::runtime_error("no help on: " + std::string(command));
}

// The name of a keyword's value.
string_view ValueName(const KeywordNode& node) {
    static const std::map<string_view, string_view> names = {
        {"J", "jukebox"},  {"server", "name"},    {"columns", "letters"}, {"sort", "letters"},
        {"label", "text"}, {"separator", "text"}, {"repeat", "number"},   {"width", "number"},
        {"M", "number"},   {"S", "number"},       {"D", "number"},        {"V", "@ID"},
    };
    const auto name = names.find(node.keyword);
    if (name == names.end())
        throw std::runtime_error("no name for the value of " + std::string(node.keyword));
    return name->second;
}

// A keyword and its value, as they are typed.
std::string Tag(const KeywordNode& node) {
    if (node.IsPlaceholder()) return ManualSyntax(node.keyword);
    std::string value;
    if (!node.values.empty()) {
        const string_view divider = node.keyword.size() > 1 ? "\\fB=\\fR" : " ";
        value = std::string(divider) + "\\fI" + ManualText(ValueName(node)) + "\\fR";
    }
    std::string tag = "\\fB" + std::string(node.keyword) + "\\fR" + value;
    return tag.starts_with('.') ? "\\&" + tag : tag;
}

std::string Item(const std::string& tag, string_view text) {
    return ".TP\n" + tag + "\n" + ManualText(ProgramText(text)) + "\n";
}

std::string TopLevelItems(KeywordKind kind) {
    std::string text;
    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        if (node->kind == kind) text += Item(Tag(*node), node->help);
    }
    return text;
}

std::string Addressing() {
    std::string text;
    for (const KeywordNode* node : CommandNode("query").children) {
        if (IsAddress(node->keyword)) text += Item(Tag(*node), node->help);
    }
    return text;
}

std::string Syntax(string_view command) {
    std::istringstream lines{ProgramText(HelpOf(command).syntax)};
    std::string text = ".nf\n";
    for (std::string line; std::getline(lines, line);) {
        // The lines of the help are indented by four.
        line.erase(0, std::min<size_t>(4, line.size()));
        line.erase(line.find_last_not_of(' ') + 1);
        text += ManualSyntax(line) + "\n";
    }
    return text + ".fi\n";
}

std::string Addresses(string_view command) {
    std::vector<string_view> keywords;
    for (const KeywordNode* node : CommandNode(command).children) {
        if (IsAddress(node->keyword)) keywords.push_back(node->keyword);
    }
    std::string text = "Items are addressed by";
    for (size_t i = 0; i < keywords.size(); ++i) {
        if (i > 0) text += i + 1 == keywords.size() ? " and" : ",";
        text += " \\fB" + std::string(keywords[i]) + "\\fR";
    }
    return FilledManualText(text + ".") + "\n";
}

std::string Parameters(string_view command) {
    std::string text;
    for (const KeywordNode* node : CommandNode(command).children) {
        if (!IsAddress(node->keyword)) text += Item(Tag(*node), node->help);
    }
    return text;
}

std::string Columns() {
    std::string text;
    for (const Ostrel::UI::Console::ColumnInfo& column : Ostrel::UI::Console::GetColumnCatalogue()) {
        text += Item("\\fB" + std::string(column.letter) + R"(\fR\ \ )" + ManualText(column.title),
                     column.description);
    }
    return text;
}

std::string Defaults() {
    std::string text;
    for (const QueryObjectInfo& object : QueryObjects()) {
        text += ".TP\n" + ManualSyntax(object.keyword) + "\n";
        text += ManualSyntax("columns=" + std::string(object.defaultColumns)) + "\n";
        text += ManualSyntax("sort=" + std::string(object.defaultSort)) + "\n";
    }
    return text;
}

std::string ReadProjectFile(string_view path) {
    std::ifstream file(KRVCMD_SOURCE_DIR "/" + std::string(path), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) throw std::runtime_error("cannot read " + std::string(path));
    return text.str();
}

// A file line by line, for an example.
std::string ProjectFile(string_view path) {
    std::istringstream lines{ReadProjectFile(path)};
    std::string text;
    for (std::string line; std::getline(lines, line);)
        text += ManualLine(line) + "\n";
    return text;
}

const ClientInterface& TheClientInterface() {
    static const ClientInterface interface =
        ReadClientInterface(ReadProjectFile("krvcmd/service/sdk/krv_sdk.h"));
    return interface;
}

// A prototype in lines that fit a terminal, broken between parameters.
std::vector<std::string> Broken(const std::string& prototype) {
    constexpr size_t kLineLength = 70;
    std::vector<std::string> lines = {""};
    std::istringstream parameters(prototype);
    for (std::string parameter; std::getline(parameters, parameter, ',');) {
        if (!parameters.eof()) parameter += ',';
        if (lines.back().size() + parameter.size() > kLineLength) lines.emplace_back("   ");
        lines.back() += parameter;
    }
    return lines;
}

std::string Prototypes() {
    std::string text = ".nf\n";
    for (const ClientInterface::Function& function : TheClientInterface().functions) {
        for (const std::string& line : Broken(function.prototype))
            text += ManualMacro("B", line) + "\n";
    }
    return text + ".fi\n";
}

std::string Functions() {
    std::string text;
    string_view section;
    for (const ClientInterface::Function& function : TheClientInterface().functions) {
        if (function.section != section) text += ManualMacro("SS", function.section) + "\n";
        section = function.section;
        text += ".TP\n" + ManualMacro("B", function.name) + "\n" + ManualProse(function.text) + "\n";
    }
    return text;
}

std::string Records() {
    std::string text;
    for (const ClientInterface::Record& record : TheClientInterface().records) {
        text += ManualMacro("SS", record.name + ", " + std::to_string(record.size) + " bytes") + "\n";
        text += ManualProse(record.text) + "\n";
        for (const ClientInterface::Field& field : record.fields) {
            text +=
                ".TP\n" + std::to_string(field.offset) + ": \\fB" + ManualText(field.declaration) + "\\fR\n";
            text += ManualProse(field.text) + "\n";
        }
    }
    return text;
}

std::string Codes() {
    std::string text;
    for (const ServiceCode& code : kServiceCodes) {
        text += ".TP\n\\fB" + std::to_string(code.code) + R"(\fR\ \ )" + ManualText(code.meaning) + "\n";
        text += ManualProse(code.effect) + "\n";
    }
    return text;
}

// The words of a layout file for one field, in one sentence.
std::string Words(string_view field) {
    std::span<const embedded::Word> words;
    if (field == "content") words = embedded::ContentWords();
    if (field == "finalization") words = embedded::FinalizationWords();
    if (field == "volume") words = embedded::VolumeTypeWords();
    if (words.empty()) throw std::runtime_error("no words for: " + std::string(field));
    std::string text;
    for (const embedded::Word& word : words) {
        text += (text.empty() ? "" : ", ") + ("\\fB" + std::string(word.word) + "\\fR");
    }
    return FilledManualText(text) + "\n";
}

string_view WritingWord(embedded::Writing writing) {
    switch (writing) {
        case embedded::Writing::ReadOnly:
            return "read-only";
        case embedded::Writing::WriteOnce:
            return "write-once";
        case embedded::Writing::Rewritable:
            break;
    }
    return "rewritable";
}

std::string MediaTypes() {
    std::string text;
    for (const embedded::MediaType& type : embedded::AllMediaTypes()) {
        text += Item("\\fB" + ManualText(type.name) + "\\fR",
                     std::to_string(type.code) + ", " + std::string(WritingWord(type.writing)) + ", " +
                         std::to_string(type.capacity) + " bytes");
    }
    return text;
}

}  // namespace

std::string ManualBlock(string_view part, string_view argument) {
    if (part == "options") return TopLevelItems(KeywordKind::Option);
    if (part == "commands") return TopLevelItems(KeywordKind::Command);
    if (part == "addressing") return Addressing();
    if (part == "syntax") return Syntax(argument);
    if (part == "addresses") return Addresses(argument);
    if (part == "parameters") return Parameters(argument);
    if (part == "columns") return Columns();
    if (part == "defaults") return Defaults();
    if (part == "words") return Words(argument);
    if (part == "media") return MediaTypes();
    if (part == "file") return ProjectFile(argument);
    if (part == "prototypes") return Prototypes();
    if (part == "functions") return Functions();
    if (part == "records") return Records();
    if (part == "codes") return Codes();
    throw std::runtime_error("no such part of a manual page: " + std::string(part));
}

}  // namespace krvcmd
