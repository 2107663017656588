#include "krvcmd/commands/command_factory.h"

#include <string_view>

#include "krvcmd/commands/able_command.h"
#include "krvcmd/commands/delete_command.h"
#include "krvcmd/commands/format_command.h"
#include "krvcmd/commands/help_command.h"
#include "krvcmd/commands/media_commands.h"
#include "krvcmd/commands/name_command.h"
#include "krvcmd/commands/service_command.h"
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
