#include "krvcmd/commands/base/command.h"

#include <type_traits>

#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

static_assert(std::has_virtual_destructor_v<CCommand>);
static_assert(!std::is_copy_constructible_v<CCommand> && !std::is_copy_assignable_v<CCommand>);

// Notes which of its operations are called and returns the prepared results.
class ScriptedCommand : public CCommand {
  public:
    Status ParseOptions() override {
        steps += "ParseOptions ";
        return parseOptions;
    }
    void Validate() override { steps += "Validate "; }
    Status Run() override {
        steps += GetBannerFlags().bannerShown ? "Run-after-banner " : "Run ";
        if (runsOutOfMemory) throw std::bad_alloc();
        return run;
    }

    std::string steps;
    Status parseOptions;
    Status run;
    bool runsOutOfMemory = false;
};

class CommandBaseTest : public test::CommandTest {
  protected:
    static Parameter Option(const KeywordNode& node, const char* text = "") {
        return {&node, *text == '\0' ? ValueKind::None : ValueKind::Text, text, {}};
    }
    static Parameter Quiet() { return Option(test::Node("quiet")); }
    static Parameter Server(const char* name) { return Option(test::Node("server"), name); }

    // Initializes and, when that succeeds, executes. What it prints goes to m_output.
    std::string Execute(ScriptedCommand& command) {
        Status status = command.Initialize(m_options, m_parameters, Writer());
        if (!status.IsOk()) return "not initialized: " + Text(status);
        testing::internal::CaptureStdout();
        status = command.Execute();
        m_output = testing::internal::GetCapturedStdout();
        return Text(status);
    }

    std::vector<Parameter> m_options;
    std::vector<Parameter> m_parameters;
    std::string m_output;
};

const Calls kOnlySession = {"KrvSessionCreate server=\".\"", "KrvSessionClose"};

TEST_F(CommandBaseTest, ParsesOpensPrintsTheBannerRunsAndCloses) {
    ScriptedCommand command;
    EXPECT_EQ(Execute(command), "OK");
    EXPECT_EQ(command.steps, "ParseOptions Validate Run-after-banner ");
    EXPECT_TRUE(m_output.starts_with("Carvoline - command line interface\n"));
    EXPECT_EQ(TakeCalls(), kOnlySession);
}

TEST_F(CommandBaseTest, DoesNothingByItself) {
    CCommand command;
    EXPECT_EQ(Text(command.ParseOptions()), "OK");
    EXPECT_EQ(Text(command.Run()), "OK");
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(CommandBaseTest, IsNotValidatedWhenItsOptionsAreWrong) {
    ScriptedCommand command;
    command.parseOptions = Status::SystemError(22);
    EXPECT_EQ(Execute(command), "not initialized: error 22");
    EXPECT_EQ(command.steps, "ParseOptions ");
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(CommandBaseTest, ReadsNoOptionsWhenItsAddressIsWrong) {
    m_parameters = {{&test::Node("query.M"), ValueKind::Numbers, {}, {{1, 1, false}}}};
    ScriptedCommand command;
    EXPECT_EQ(Execute(command), "not initialized: error 22");
    EXPECT_EQ(command.steps, "");
}

TEST_F(CommandBaseTest, RefusesOptionsThatAreNotCommon) {
    const KeywordNode unknown = test::MakeNode("unknown", KeywordKind::Option);
    const std::vector<Parameter> rows[] = {
        {Option(unknown)},
        {Option(unknown), Option(unknown)},
        {Option(unknown), Quiet()},  // a later good option changes nothing
    };
    for (const std::vector<Parameter>& options : rows) {
        m_options = options;
        ScriptedCommand command;
        EXPECT_EQ(Execute(command), "not initialized: error 22");
        EXPECT_EQ(command.steps, "");
    }
    EXPECT_EQ(TakeCalls(), Calls{});
    EXPECT_FALSE(GetBannerFlags().quiet);
}

TEST_F(CommandBaseTest, AcceptsYesWithoutAnyEffect) {
    const KeywordNode yes = test::MakeNode("yes", KeywordKind::Option);
    m_options = {Option(yes)};
    ScriptedCommand command;
    EXPECT_EQ(Execute(command), "OK");
}

TEST_F(CommandBaseTest, OpensTheSessionOnTheLastServerGiven) {
    const std::pair<std::vector<Parameter>, std::string> rows[] = {
        {{Server("sales server")}, "KrvSessionCreate server=\"sales server\""},
        {{Server("one"), Server("two")}, "KrvSessionCreate server=\"two\""},
        {{Option(test::Node("server"))}, "KrvSessionCreate server=\"\""},
    };
    for (const auto& [options, call] : rows) {
        m_options = options;
        ScriptedCommand command;
        EXPECT_EQ(Execute(command), "OK");
        EXPECT_EQ(TakeCalls(), (Calls{call, "KrvSessionClose"}));
    }
}

TEST_F(CommandBaseTest, ClosesASessionThatWasNotOpenedAndDoesNotRun) {
    Fake().FailCall("KrvSessionCreate", Occurrence::Every(), {1002, "unreachable"});
    ScriptedCommand command;
    EXPECT_EQ(Execute(command), "service error 1002: unreachable");
    EXPECT_EQ(command.steps, "ParseOptions Validate ");
    EXPECT_EQ(TakeCalls(), kOnlySession);
    EXPECT_TRUE(m_output.starts_with("Carvoline - command line interface\n"));

    GetBannerFlags() = {};
    m_options = {Quiet()};
    ScriptedCommand quiet;
    EXPECT_EQ(Execute(quiet), "service error 1002: unreachable");
    EXPECT_EQ(TakeCalls(), kOnlySession);
    EXPECT_EQ(m_output, "");
}

TEST_F(CommandBaseTest, ClosesTheSessionWhenItsWorkFailsOrRunsOutOfMemory) {
    ScriptedCommand failing;
    failing.run = Status::SystemError(6);
    EXPECT_EQ(Execute(failing), "error 6");
    EXPECT_EQ(TakeCalls(), kOnlySession);

    ScriptedCommand greedy;
    greedy.runsOutOfMemory = true;
    EXPECT_EQ(Execute(greedy), "error 12");
    EXPECT_EQ(TakeCalls(), kOnlySession);
}

TEST_F(CommandBaseTest, IgnoresAFailureToClose) {
    Fake().FailCall("KrvSessionClose", Occurrence::Every(), {9, "no"});
    ScriptedCommand good;
    EXPECT_EQ(Execute(good), "OK");
    ScriptedCommand bad;
    bad.run = Status::SystemError(6);
    EXPECT_EQ(Execute(bad), "error 6");
}

TEST_F(CommandBaseTest, SetsTheQuietFlagOnlyWhenItStartsItsWork) {
    m_options = {Quiet()};
    ScriptedCommand command;
    ASSERT_TRUE(command.Initialize(m_options, m_parameters, Writer()).IsOk());
    EXPECT_FALSE(GetBannerFlags().quiet);
    EXPECT_EQ(Text(command.Execute()), "OK");
    EXPECT_TRUE(GetBannerFlags().quiet);
    EXPECT_FALSE(GetBannerFlags().bannerShown);
}

}  // namespace
}  // namespace krvcmd
