#include "krvcmd/frontend/report/help.h"

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/grammar/keyword.h"

namespace krvcmd {
namespace {

constexpr size_t kEntryIndent = 4;
constexpr size_t kGeneralIndent = 8;
constexpr size_t kParameterWidth = 10;

bool WordBegins(std::string_view word, std::string_view keyword) {
    return KeywordEquals(word, keyword) || KeywordStartsWith(word, keyword);
}

const HelpEntry* FindEntry(std::string_view word) {
    for (const HelpEntry& entry : HelpTable()) {
        if (entry.node != nullptr && WordBegins(word, entry.node->keyword)) return &entry;
    }
    return nullptr;
}

}  // namespace

std::string Pad(size_t indent, size_t width, std::string_view text) {
    std::string padded(indent, ' ');
    padded += text;
    if (text.size() < width) padded.append(width - text.size(), ' ');
    return padded;
}

void HelpPrinter::Write(std::string_view text) {
    m_writer.PrintText(Ostrel::UI::Console::Stream::StandardOutput, text);
}

void HelpPrinter::PrintKeywordLine(size_t indent, size_t width, const KeywordNode& node) {
    // One text, so that it is wrapped as one.
    Write(Pad(indent, width, node.keyword).append(": ").append(node.help).append("\n"));
}

void HelpPrinter::PrintCommonOptions() {
    Write("common options:\n");
    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        if (node->kind == KeywordKind::Option) PrintKeywordLine(kEntryIndent, 0, *node);
    }
}

void HelpPrinter::PrintParameters(const KeywordNode& command, Layout layout) {
    const size_t base = layout == Layout::Detailed ? 0 : kGeneralIndent;
    bool headingWritten = false;
    for (const KeywordNode* child : command.children) {
        if (child->kind != KeywordKind::Parameter) continue;
        if (!headingWritten) Write(Pad(base, 0, "parameter").append(":\n"));
        headingWritten = true;
        PrintKeywordLine(base + kEntryIndent, kParameterWidth, *child);
    }
    if (command.keyword == "query") m_writer.PrintColumnHelp();
}

void HelpPrinter::PrintCommands(Parameters parameters) {
    Write("commands:\n");
    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        if (node->kind != KeywordKind::Command) continue;
        PrintKeywordLine(kEntryIndent, 0, *node);
        if (parameters == Parameters::Show) PrintParameters(*node, Layout::General);
    }
}

void HelpPrinter::PrintGeneralHelp() {
    Write(help_text::kUsage);
    Write(help_text::kIntroduction);
    Write(help_text::kExamples);
    Write(help_text::kAbbreviationNote);
    PrintCommonOptions();
    PrintCommands(Parameters::Show);
}

void HelpPrinter::PrintEntry(const HelpEntry& entry) {
    if (!entry.description.empty()) Write(std::string(entry.description) + "\n");
    if (!entry.syntax.empty()) Write("syntax:\n" + std::string(entry.syntax) + "\n");
    PrintParameters(*entry.node, Layout::Detailed);
    if (!entry.example.empty()) Write("\nexample:\n" + std::string(entry.example));
}

void HelpPrinter::PrintHelpOnHelp() {
    Write(help_text::kUsage);
    PrintCommands(Parameters::Hide);
    Write("\n");
    Write(help_text::kHelpOnHelp);
}

bool HelpPrinter::PrintDetailedHelp(std::string_view word) {
    const HelpEntry* entry = FindEntry(word);
    if (entry == nullptr) return false;
    // The entry of "help" has no node today, so no word gets here with an entry; it is kept for
    // the day when it has one.
    if (WordBegins(word, "help")) {
        PrintHelpOnHelp();
    } else {
        PrintEntry(*entry);
    }
    return true;
}

void HelpPrinter::PrintHelp(std::string_view word) {
    if (!word.empty() && PrintDetailedHelp(word)) return;
    PrintGeneralHelp();
}

}  // namespace krvcmd
