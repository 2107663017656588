#include "packaging/generate/tool_rows.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "packaging/generate/fill_file.h"
#include "packaging/generate/shell_tables.h"
#include "tools/common/command_line.h"

namespace embedded::tools {
namespace {

using Kinds = std::span<const ValueKind>;

std::string ValuesOf(const std::string& command, const std::string& word, Kinds kinds) {
    const auto kind = std::ranges::find_if(kinds, [&](const ValueKind& candidate) {
        return word == candidate.word && (candidate.command.empty() || command == candidate.command);
    });
    return kind == kinds.end() ? "<text>" : kind->values;
}

std::string Line(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        if (field.find('|') != std::string::npos) throw std::runtime_error("separator within: " + field);
        line += (&field == fields.data() ? "" : "|") + field;
    }
    return line;
}

std::string RowOf(const std::string& command, const CLI::Option& option, Kinds kinds) {
    const bool isPositional = option.get_lnames().empty();
    const std::string word =
        isPositional ? "<" + option.get_name(true) + ">" : "--" + option.get_lnames().front();
    const bool isMany = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    const bool isFlag = option.get_items_expected_max() == 0;
    return Line({command, word, isMany ? "many" : "", isFlag ? "" : ValuesOf(command, word, kinds),
                 option.get_description()});
}

struct Level {
    std::string command;
    const CLI::App* app = nullptr;
};

}  // namespace

std::vector<std::string> ToolRows(CommandLine& tool, Kinds kinds) {
    std::vector<std::string> rows;
    std::vector<Level> levels = {{"", &tool.GetTool()}};
    for (size_t index = 0; index < levels.size(); ++index) {
        const Level level = levels[index];
        for (const CLI::App* inner : level.app->get_subcommands([](const CLI::App*) { return true; })) {
            rows.push_back(Line({level.command, inner->get_name(), "", "", inner->get_description()}));
            levels.push_back({level.command + (level.command.empty() ? "" : " ") + inner->get_name(), inner});
        }
        for (const CLI::Option* option : level.app->get_options())
            rows.push_back(RowOf(level.command, *option, kinds));
    }
    return rows;
}

int FillToolScript(int argc, char** argv, CommandLine& tool, Kinds kinds) {
    return krvcmd::FillFile(argc, argv, [&](const std::string& mark) {
        constexpr std::string_view kStart = "rows ";
        if (!mark.starts_with(kStart)) throw std::runtime_error("unknown mark: @" + mark + "@");
        return krvcmd::ShellTexts(mark.substr(kStart.size()), ToolRows(tool, kinds));
    });
}

}  // namespace embedded::tools
