#include "krvcmd/commands/factory/command_factory.h"

#include <string_view>

#include "krvcmd/commands/actions/able_command.h"
#include "krvcmd/commands/actions/format_command.h"
#include "krvcmd/commands/actions/help_command.h"
#include "krvcmd/commands/actions/media_commands.h"
#include "krvcmd/commands/actions/name_command.h"
#include "krvcmd/commands/actions/service_command.h"
#include "krvcmd/service/query/query_command.h"

namespace krvcmd {
namespace {

template <class Command>
std::unique_ptr<CCommand> Make() {
    return std::make_unique<Command>();
}

struct CommandMaker {
    std::string_view keyword;
    std::unique_ptr<CCommand> (*make)();
};

constexpr CommandMaker kCommands[] = {
    {"help", Make<CHelp>}, {"?", Make<CHelp>},        {"import", Make<CImport>}, {"export", Make<CExport>},
    {"scan", Make<CScan>}, {"format", Make<CFormat>}, {"enable", Make<CEnable>}, {"disable", Make<CDisable>},
    {"name", Make<CName>}, {"delete", Make<CDelete>}, {"query", Make<CQuery>},   {"service", Make<CService>},
};

}  // namespace

Status CreateCommand(const KeywordNode* node, std::unique_ptr<CCommand>& command) {
    if (node == nullptr) {
        command = Make<CCommand>();
        return {};
    }
    for (const CommandMaker& maker : kCommands) {
        if (maker.keyword != node->keyword) continue;
        command = maker.make();
        return {};
    }
    return Status::SystemError(os_code::kInvalidCommandLine);
}

}  // namespace krvcmd
