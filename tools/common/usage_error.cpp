#include "tools/common/usage_error.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace embedded::tools {
namespace {

std::string Quoted(const std::string& word) {
    return '"' + word + '"';
}

// The words that the parser did not understand. After a wrong value the separator "--" may be among them.
std::vector<std::string> WithoutSeparator(std::vector<std::string> remaining) {
    std::erase(remaining, "--");
    return remaining;
}

// The command that the words named, as far as the parser knew them.
const CLI::App& NamedCommand(const CLI::App& tool) {
    const CLI::App* app = &tool;
    while (!app->get_subcommands().empty())
        app = app->get_subcommands().front();
    return *app;
}

std::vector<std::string> CommandsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    return names;
}

std::vector<std::string> OptionsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

// The number of letters to change, insert, leave out or exchange with the next one that makes `from` to `to`.
size_t Distance(const std::string& from, const std::string& to) {
    std::vector<size_t> beforeLast;
    std::vector<size_t> last(to.size() + 1);
    std::iota(last.begin(), last.end(), size_t{0});
    for (size_t i = 1; i <= from.size(); ++i) {
        std::vector<size_t> row(to.size() + 1, i);
        for (size_t j = 1; j <= to.size(); ++j) {
            const size_t changed = last[j - 1] + (from[i - 1] == to[j - 1] ? 0U : 1U);
            row[j] = std::min({changed, last[j] + 1, row[j - 1] + 1});
            const bool isExchanged = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
            if (isExchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast = std::move(last);
        last = std::move(row);
    }
    return last.back();
}

// Empty if no word begins so, or the beginning is a single letter.
std::string ShortestBeginningWith(const std::string& beginning, const std::vector<std::string>& known) {
    std::string shortest;
    if (beginning.find_first_not_of('-') + 1 >= beginning.size()) return shortest;
    for (const std::string& candidate : known) {
        if (!candidate.starts_with(beginning)) continue;
        if (shortest.empty() || candidate.size() < shortest.size()) shortest = candidate;
    }
    return shortest;
}

std::string Suggestion(const std::string& word, const std::vector<std::string>& known) {
    const std::string nearest = NearestWord(word, known);
    return nearest.empty() ? "" : "; did you mean " + Quoted(nearest) + "?";
}

std::string UnknownWordText(const CLI::App& command, const std::string& word) {
    if (word.size() > 1 && word.front() == '-') {
        const std::string name = word.substr(0, word.find('='));
        return "unknown option " + Quoted(name) + Suggestion(name, OptionsOf(command));
    }
    const std::vector<std::string> commands = CommandsOf(command);
    if (commands.empty()) return "unexpected word " + Quoted(word);
    return "unknown command " + Quoted(word) + Suggestion(word, commands);
}

std::string MissingText(const CLI::App& command, const CLI::Error& error) {
    if (!CommandsOf(command).empty() && command.get_require_subcommand_min() > 0) {
        std::string text;
        for (const std::string& name : CommandsOf(command))
            text += (text.empty() ? "" : ", ") + name;
        return "a command is missing; the commands are " + text;
    }
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_required() && option->count() == 0) return option->get_name() + " is required";
    }
    return error.what();
}

bool IsFlag(const CLI::Option& option) {
    return option.get_items_expected_max() == 0;
}

bool IsWholeNumber(const std::string& text) {
    uint64_t number = 0;
    const char* const start = text.data() + (text.starts_with('-') ? 1 : 0);
    const char* const end = text.data() + text.size();
    const auto [stop, result] = std::from_chars(start, end, number);
    return result == std::errc{} && stop == end;
}

// A value that is not of the kind that its option takes: of all options only flags and numbers refuse any.
std::string ConversionText(const CLI::App& command) {
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& value : option->results()) {
            if (IsFlag(*option) && value != "true") return option->get_name() + " takes no value";
            const std::string type = option->get_type_name();
            if ((type == "INT" || type == "UINT") && !IsWholeNumber(value))
                return option->get_name() + ": " + Quoted(value) + " is not a whole number";
        }
    }
    return "a value is too large, or not of the kind that its option takes";
}

// An option with too few or too many values.
std::string MismatchText(const CLI::App& command, const CLI::Error& error) {
    const std::string message = error.what();
    const CLI::Option* const option = command.get_option_no_throw(message.substr(0, message.find(':')));
    if (option == nullptr) return "an option has too few or too many values";
    if (option->count() > 1) return option->get_name() + " is given more than once";
    return option->get_name() + " needs a value";
}

}  // namespace

std::string NearestWord(const std::string& word, const std::vector<std::string>& known) {
    constexpr size_t kLettersPerMistake = 3;
    size_t smallest = std::max(word.size() / kLettersPerMistake, size_t{1}) + 1;
    std::string nearest;
    for (const std::string& candidate : known) {
        if (const size_t distance = Distance(word, candidate); distance < smallest) {
            smallest = distance;
            nearest = candidate;
        }
    }
    return nearest.empty() ? ShortestBeginningWith(word, known) : nearest;
}

std::string UsageErrorText(const CLI::App& tool, const CLI::Error& error) {
    const CLI::App& command = NamedCommand(tool);
    if (const std::vector<std::string> unknown = WithoutSeparator(command.remaining()); !unknown.empty())
        return UnknownWordText(command, unknown.front());
    if (const std::vector<std::string> unknown = WithoutSeparator(tool.remaining(true)); !unknown.empty())
        return UnknownWordText(tool, unknown.front());
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) return MissingText(command, error);
    if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) return ConversionText(command);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) return MismatchText(command, error);
    // "--count: 0 is not a number from 1 to 100", "--on excludes --off", "--from requires --library"
    return error.what();
}

}  // namespace embedded::tools
