#include "packaging/generate/shell_tables.h"

#include <stdexcept>
#include <vector>

#include "packaging/generate/completion_rows.h"

namespace krvcmd {
namespace {

using std::string_view;

std::string Join(const std::vector<string_view>& words, char divider) {
    std::string joined;
    for (const string_view word : words) {
        if (!joined.empty()) joined += divider;
        joined += word;
    }
    return joined;
}

std::string Fields(const std::vector<std::string>& fields) {
    std::string line;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].find('|') != std::string::npos)
            throw std::runtime_error("separator within: " + fields[i]);
        if (i > 0) line += '|';
        line += fields[i];
    }
    return line;
}

std::vector<std::string> GrammarLines() {
    std::vector<std::string> lines;
    for (const CompletionRow& row : MakeCompletionRows()) {
        lines.push_back(
            Fields({std::string(row.level), std::string(row.keyword), row.isCommand ? "command" : "",
                    row.dashAllowed ? "dash" : "", std::string(row.value), Join(row.excluded, ' '),
                    Join(row.excludedByList, ' '), row.help}));
    }
    return lines;
}

std::vector<std::string> ColumnLines() {
    std::vector<std::string> lines;
    for (const LetterRow& row : MakeLetterRows()) {
        lines.push_back(
            Fields({std::string(row.letter), Join(row.objects, ' '), std::string(row.description)}));
    }
    return lines;
}

std::vector<std::string> TopicLines() {
    const std::vector<string_view> topics = HelpTopics();
    return {topics.begin(), topics.end()};
}

// A single quotation mark within single quotation marks.
string_view QuoteWithinQuotes(string_view shell) {
    if (shell == "bash" || shell == "zsh") return "'\\''";
    if (shell == "fish") return "\\'";
    if (shell == "powershell") return "''";
    throw std::runtime_error("no such shell: " + std::string(shell));
}

std::string Quoted(string_view shell, string_view text) {
    // Looked up in any case, so that an unknown shell fails.
    const string_view innerQuote = QuoteWithinQuotes(shell);
    std::string quoted = "'";
    for (const char character : text) {
        if (character == '\'') {
            quoted += innerQuote;
        } else if (character == '\\' && shell == "fish") {
            quoted += "\\\\";
        } else {
            quoted += character;
        }
    }
    return quoted + "'";
}

std::vector<std::string> LinesOf(string_view table) {
    if (table == "grammar") return GrammarLines();
    if (table == "columns") return ColumnLines();
    if (table == "topics") return TopicLines();
    throw std::runtime_error("no such table: " + std::string(table));
}

}  // namespace

std::string ShellTable(string_view shell, string_view table) {
    return ShellTexts(shell, LinesOf(table));
}

std::string ShellTexts(string_view shell, const std::vector<std::string>& texts) {
    // In fish, a line of a list ends with a backslash when another follows.
    const string_view betweenLines = shell == "fish" ? " \\\n" : "\n";
    std::string lines;
    for (const std::string& text : texts) {
        if (!lines.empty()) lines += betweenLines;
        lines += Quoted(shell, text);
    }
    return lines + "\n";
}

}  // namespace krvcmd
