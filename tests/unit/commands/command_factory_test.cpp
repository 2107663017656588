#include "krvcmd/commands/factory/command_factory.h"

#include <gtest/gtest.h>

#include <typeinfo>

#include "krvcmd/commands/actions/able_command.h"
#include "krvcmd/commands/actions/format_command.h"
#include "krvcmd/commands/actions/help_command.h"
#include "krvcmd/commands/actions/media_commands.h"
#include "krvcmd/commands/actions/name_command.h"
#include "krvcmd/commands/actions/service_command.h"
#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/service/query/query_command.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

struct CommandRow {
    std::string_view keyword;
    const std::type_info& type;
};

const CommandRow kRows[] = {
    {"help", typeid(CHelp)},     {"?", typeid(CHelp)},          {"import", typeid(CImport)},
    {"export", typeid(CExport)}, {"scan", typeid(CScan)},       {"format", typeid(CFormat)},
    {"enable", typeid(CEnable)}, {"disable", typeid(CDisable)}, {"name", typeid(CName)},
    {"query", typeid(CQuery)},   {"service", typeid(CService)},
};

const std::type_info& TypeOf(const KeywordNode* node) {
    std::unique_ptr<CCommand> command;
    EXPECT_EQ(test::Text(CreateCommand(node, command)), "OK");
    const CCommand& created = *command;
    return typeid(created);
}

TEST(CreateCommand, MakesTheClassOfEachKeyword) {
    for (const CommandRow& row : kRows)
        EXPECT_EQ(TypeOf(&test::Node(row.keyword)), row.type) << row.keyword;
    EXPECT_EQ(TypeOf(&CommandGrammar::Delete()), typeid(CDelete));
}

TEST(CreateCommand, KnowsEveryCommandOfTheGrammar) {
    size_t commands = 0;
    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        if (node->kind != KeywordKind::Command) continue;
        ++commands;
        (void)TypeOf(node);
    }
    EXPECT_EQ(commands, std::size(kRows));
}

TEST(CreateCommand, RefusesKeywordsThatAreNoCommands) {
    for (const std::string_view keyword : {"quiet", "server", "query.J", "query.slots"}) {
        std::unique_ptr<CCommand> command;
        EXPECT_EQ(test::Text(CreateCommand(&test::Node(keyword), command)), "error 22") << keyword;
        EXPECT_EQ(command, nullptr) << keyword;
    }
}

TEST(CreateCommand, ComparesTheWholeKeyword) {
    std::unique_ptr<CCommand> command;
    const KeywordNode abbreviation = test::MakeNode("quer", KeywordKind::Command);
    EXPECT_EQ(test::Text(CreateCommand(&abbreviation, command)), "error 22");
}

TEST(CreateCommand, MakesAPlainCommandWithoutANode) {
    EXPECT_EQ(TypeOf(nullptr), typeid(CCommand));
}

TEST(CreateCommand, GivesItemByItemCommandsAWorkerToo) {
    for (const CommandRow& row : kRows) {
        std::unique_ptr<CCommand> command;
        ASSERT_TRUE(CreateCommand(&test::Node(row.keyword), command).IsOk());
        const bool isWorker = dynamic_cast<CWorker*>(command.get()) != nullptr;
        const bool expected = row.keyword == "import" || row.keyword == "export" || row.keyword == "scan" ||
                              row.keyword == "format" || row.keyword == "query";
        EXPECT_EQ(isWorker, expected) << row.keyword;
    }
}

}  // namespace
}  // namespace krvcmd
