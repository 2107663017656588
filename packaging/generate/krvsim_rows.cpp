#include "packaging/generate/krvsim_rows.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "tools/common/command_line.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/fault_request.h"

namespace embedded::tools {
namespace {

struct ValueKind {
    const char* word;     // an option, or another word of a command
    const char* command;  // empty = of any
    const char* values;
};

// All others are "<text>".
constexpr ValueKind kValueKinds[] = {
    {"--server", "", "<server>"},
    {"--layout", "", "<file>"},
    {"--library", "", "<file>"},
    {"--from-library", "", "<file>"},
    {"--expect", "", "<file>"},
    {"--report", "", "<file>"},
    {"--profile", "", "small large <file>"},
    {"--format", "", "toml json html"},
    {"--side", "", "A B"},
    {"<FILE>", "", "<file>"},
    {"<A>", "diff", "<server>"},
    {"<B>", "diff", "<server>"},
    {"<NAME>", "restore", "<snapshot>"},
    {"<NAME>", "remove", "<snapshot>"},
    {"<COMMAND>", "run", "<command>"},
};

std::string ValuesOf(const std::string& command, const std::string& word) {
    if (word == "--fault") {
        std::string presets = PresetNames();
        std::erase(presets, ',');
        return presets + " <file>";
    }
    const auto* const kind = std::ranges::find_if(kValueKinds, [&](const ValueKind& candidate) {
        return word == candidate.word && (*candidate.command == '\0' || command == candidate.command);
    });
    return kind == std::end(kValueKinds) ? "<text>" : kind->values;
}

std::string Line(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        if (field.find('|') != std::string::npos) throw std::runtime_error("separator within: " + field);
        line += (&field == fields.data() ? "" : "|") + field;
    }
    return line;
}

std::string RowOf(const std::string& command, const CLI::Option& option) {
    const bool isPositional = option.get_lnames().empty();
    const std::string word =
        isPositional ? "<" + option.get_name(true) + ">" : "--" + option.get_lnames().front();
    const bool isMany = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    const bool isFlag = option.get_items_expected_max() == 0;
    return Line({command, word, isMany ? "many" : "", isFlag ? "" : ValuesOf(command, word),
                 option.get_description()});
}

struct Level {
    std::string command;
    const CLI::App* app = nullptr;
};

}  // namespace

std::vector<std::string> KrvsimRows() {
    CommandLine tool("krvsim", "");
    AddCommands(tool);
    std::vector<std::string> rows;
    std::vector<Level> levels = {{"", &tool.GetTool()}};
    for (size_t index = 0; index < levels.size(); ++index) {
        const Level level = levels[index];
        for (const CLI::App* inner : level.app->get_subcommands([](const CLI::App*) { return true; })) {
            rows.push_back(Line({level.command, inner->get_name(), "", "", inner->get_description()}));
            levels.push_back({level.command + (level.command.empty() ? "" : " ") + inner->get_name(), inner});
        }
        for (const CLI::Option* option : level.app->get_options())
            rows.push_back(RowOf(level.command, *option));
    }
    return rows;
}

}  // namespace embedded::tools
