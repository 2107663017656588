#include "krvcmd/commands/actions/name_command.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using test::Calls;

class DeleteTest : public test::CommandTest {};

TEST_F(DeleteTest, OpensAndClosesTheSessionAndChangesNothing) {
    const Parameter volume{&test::Node("query.V"), ValueKind::Numbers, {}, {{33, 33, false}}};
    const std::vector<Parameter> options;
    for (const std::vector<Parameter>& parameters :
         {std::vector<Parameter>{}, std::vector<Parameter>{volume}}) {
        GetBannerFlags() = {false, true};
        CDelete command;
        ASSERT_TRUE(command.Initialize(options, parameters).IsOk());
        EXPECT_EQ(test::Text(command.Execute()), "OK");
        EXPECT_EQ(TakeCalls(), (Calls{"KrvSessionCreate server=\".\"", "KrvSessionClose"}));
    }
}

TEST_F(DeleteTest, CannotBeNamedOnTheCommandLine) {
    const test::Outcome outcome = Run({"delete", "V@33"});
    EXPECT_EQ(outcome.status, "error 22");
    EXPECT_EQ(outcome.calls, Calls{});
}

}  // namespace
}  // namespace krvcmd
