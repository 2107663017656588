#include "krvcmd/frontend/report/help.h"

#include <algorithm>
#include <cstddef>

#include "krvcmd/console/query/column_catalogue.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/grammar/keyword.h"
#include "krvcmd/frontend/report/help_table.h"

namespace krvcmd {
namespace {

using Texts = std::vector<HelpText>;

constexpr size_t kEntryIndent = 4;
constexpr size_t kParameterWidth = 10;

enum class Parameters { Hide, Show };

// The indentation of a list of parameters.
enum class Layout : size_t {
    Detailed = 0,  // the help of one command
    General = 8,   // under a command of the general help
};

void Add(Texts& texts, std::string_view text) {
    texts.push_back({{}, std::string(text)});
}

// `indent` blanks and the text, which blanks fill up to `width` characters. A longer text is not cut.
std::string Pad(size_t indent, size_t width, std::string_view text) {
    std::string padded(indent, ' ');
    padded += text;
    if (text.size() < width) padded.append(width - text.size(), ' ');
    return padded;
}

std::string KeywordLine(size_t indent, size_t width, const KeywordNode& node) {
    return Pad(indent, width, node.keyword).append(": ").append(node.help).append("\n");
}

void AddCommonOptions(Texts& texts) {
    Add(texts, "common options:\n");
    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        if (node->kind == KeywordKind::Option) Add(texts, KeywordLine(kEntryIndent, 0, *node));
    }
}

void AddColumnIdentifiers(Texts& texts) {
    Add(texts, "\n");
    Add(texts, help_text::kColumnIdentifiers);
    for (const Ostrel::UI::Console::ColumnInfo& column : Ostrel::UI::Console::GetColumnCatalogue())
        texts.push_back({std::string(column.letter), std::string(column.description)});
}

void AddParameters(Texts& texts, const KeywordNode& command, Layout layout) {
    const auto indent = static_cast<size_t>(layout);
    if (!command.children.empty()) Add(texts, Pad(indent, 0, "parameter:\n"));
    for (const KeywordNode* parameter : command.children)
        Add(texts, KeywordLine(indent + kEntryIndent, kParameterWidth, *parameter));
    if (command.keyword == "query") AddColumnIdentifiers(texts);
}

void AddCommands(Texts& texts, Parameters parameters) {
    Add(texts, "commands:\n");
    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        if (node->kind != KeywordKind::Command) continue;
        Add(texts, KeywordLine(kEntryIndent, 0, *node));
        if (parameters == Parameters::Show) AddParameters(texts, *node, Layout::General);
    }
}

Texts GeneralHelp() {
    Texts texts;
    Add(texts, help_text::kUsage);
    Add(texts, help_text::kIntroduction);
    Add(texts, help_text::kExamples);
    Add(texts, help_text::kAbbreviationNote);
    AddCommonOptions(texts);
    AddCommands(texts, Parameters::Show);
    return texts;
}

Texts HelpOnHelp() {
    Texts texts;
    Add(texts, help_text::kUsage);
    AddCommands(texts, Parameters::Hide);
    Add(texts, "\n");
    Add(texts, help_text::kHelpOnHelp);
    return texts;
}

Texts DetailedHelp(const HelpEntry& entry) {
    Texts texts;
    if (!entry.description.empty()) Add(texts, std::string(entry.description) + "\n");
    if (!entry.syntax.empty()) Add(texts, "syntax:\n" + std::string(entry.syntax) + "\n");
    AddParameters(texts, *entry.node, Layout::Detailed);
    if (!entry.example.empty()) Add(texts, "\nexample:\n" + std::string(entry.example));
    return texts;
}

const HelpEntry* FindEntry(std::string_view word) {
    const std::span<const HelpEntry> entries = HelpTable();
    const auto found = std::ranges::find_if(entries, [word](const HelpEntry& entry) {
        return entry.node != nullptr && KeywordStartsWith(word, entry.node->keyword);
    });
    return found == entries.end() ? nullptr : &*found;
}

}  // namespace

std::vector<HelpText> HelpTexts(std::string_view word) {
    const HelpEntry* entry = word.empty() ? nullptr : FindEntry(word);
    if (entry == nullptr) return GeneralHelp();
    // "help" itself has no entry to be found by. A word that begins with a blank gets here: a blank ends the
    // text that is compared, so such a word is the beginning of every keyword.
    if (KeywordStartsWith(word, "help")) return HelpOnHelp();
    return DetailedHelp(*entry);
}

void PrintHelp(std::string_view word, Ostrel::UI::Console::COutputObject& writer) {
    for (const HelpText& help : HelpTexts(word)) {
        if (help.term.empty()) {
            writer.PrintText(Ostrel::UI::Console::Stream::StandardOutput, help.text);
        } else {
            writer.PrintDefinition(help.term, help.text);
        }
    }
}

}  // namespace krvcmd
