#include "krvcmd/commands/base/command.h"

#include <type_traits>

#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Outcome;
using test::Text;

static_assert(std::has_virtual_destructor_v<CCommand>);
static_assert(!std::is_copy_constructible_v<CCommand> && !std::is_copy_assignable_v<CCommand>);

// Notes which of its operations are called, and answers as it was told.
class ScriptedCommand : public CCommand {
  public:
    Status ParseOptions() override {
        steps += "ParseOptions ";
        return parseOptions;
    }
    void Validate() override { steps += "Validate "; }
    Status Run() override {
        steps += "Run ";
        return run;
    }

    std::string steps;
    Status parseOptions;
    Status run;
};

class CommandBaseTest : public test::CommandTest {
  protected:
    Parameter Option(const KeywordNode& node, const char* text = "") {
        return {&node, *text == '\0' ? ValueKind::None : ValueKind::Text, text, {}};
    }
    Parameter Quiet() { return Option(test::Node("quiet")); }
    Parameter Server(const char* name) { return Option(test::Node("server"), name); }

    // Initializes and, when that succeeds, executes; what it printed is forgotten.
    std::string RunCommand(ScriptedCommand& command) {
        Status status = command.Initialize(m_options, m_parameters);
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

const std::string kSessionOnThisMachine = "KrvSessionCreate server=\".\"";

TEST_F(CommandBaseTest, GoesThroughItsStepsInOrder) {
    ScriptedCommand command;
    EXPECT_EQ(RunCommand(command), "OK");
    EXPECT_EQ(command.steps, "ParseOptions Validate Run ");
    EXPECT_EQ(TakeCalls(), (Calls{kSessionOnThisMachine, "KrvSessionClose"}));
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
    EXPECT_EQ(RunCommand(command), "not initialized: error 22");
    EXPECT_EQ(command.steps, "ParseOptions ");
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(CommandBaseTest, ReadsNoOptionsWhenItsAddressIsWrong) {
    m_parameters = {{&test::Node("query.M"), ValueKind::Numbers, {}, {{1, 1, false}}}};
    ScriptedCommand command;
    EXPECT_EQ(RunCommand(command), "not initialized: error 22");
    EXPECT_EQ(command.steps, "");
}

TEST_F(CommandBaseTest, RefusesOptionsThatAreNotCommon) {
    const KeywordNode unknown = test::MakeNode("unknown", KeywordKind::Option);
    m_options = {Option(unknown)};
    ScriptedCommand once;
    EXPECT_EQ(RunCommand(once), "not initialized: error 22");
    EXPECT_EQ(once.steps, "");
    m_options = {Option(unknown), Option(unknown)};
    ScriptedCommand twice;
    EXPECT_EQ(RunCommand(twice), "not initialized: error 22");
    // A good option behind it does not make up for it.
    m_options = {Option(unknown), Quiet()};
    ScriptedCommand followed;
    EXPECT_EQ(RunCommand(followed), "not initialized: error 22");
    EXPECT_EQ(TakeCalls(), Calls{});
    EXPECT_FALSE(GetBannerFlags().quiet);
}

TEST_F(CommandBaseTest, AcceptsTheOptionThatNothingReads) {
    const KeywordNode yes = test::MakeNode("yes", KeywordKind::Option);
    m_options = {Option(yes)};
    ScriptedCommand command;
    EXPECT_EQ(RunCommand(command), "OK");
}

TEST_F(CommandBaseTest, OpensTheSessionOnTheServer) {
    m_options = {Server("sales server")};
    ScriptedCommand command;
    EXPECT_EQ(RunCommand(command), "OK");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvSessionCreate server=\"sales server\"", "KrvSessionClose"}));
}

TEST_F(CommandBaseTest, TakesTheLastServer) {
    m_options = {Server("one"), Server("two")};
    ScriptedCommand command;
    EXPECT_EQ(RunCommand(command), "OK");
    EXPECT_EQ(TakeCalls().front(), "KrvSessionCreate server=\"two\"");
}

TEST_F(CommandBaseTest, HandsOverAnEmptyServerNameWhenThatWasGiven) {
    m_options = {Option(test::Node("server"))};
    ScriptedCommand command;
    EXPECT_EQ(RunCommand(command), "OK");
    EXPECT_EQ(TakeCalls().front(), "KrvSessionCreate server=\"\"");
}

TEST_F(CommandBaseTest, ClosesWhatCouldNotBeOpenedAndDoesNotRun) {
    Fake().FailCall("KrvSessionCreate", Occurrence::Every(), {1002, "unreachable"});
    ScriptedCommand command;
    EXPECT_EQ(RunCommand(command), "service error 1002: unreachable");
    EXPECT_EQ(command.steps, "ParseOptions Validate ");
    EXPECT_EQ(TakeCalls(), (Calls{kSessionOnThisMachine, "KrvSessionClose"}));
    EXPECT_TRUE(m_output.starts_with("Carvoline - command line interface\n"));
}

TEST_F(CommandBaseTest, ShowsNoBannerForAnUnreachableServerWhenQuiet) {
    Fake().FailCall("KrvSessionCreate", Occurrence::Every(), {1002, "unreachable"});
    const Outcome outcome = Run({"quiet", "server=nowhere", "import", "J@8"});
    EXPECT_EQ(outcome.status, "service error 1002: unreachable");
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.calls, (Calls{"KrvSessionCreate server=\"nowhere\"", "KrvSessionClose"}));
}

TEST_F(CommandBaseTest, ClosesTheSessionWhenItsWorkFails) {
    ScriptedCommand command;
    command.run = Status::SystemError(6);
    EXPECT_EQ(RunCommand(command), "error 6");
    EXPECT_EQ(TakeCalls(), (Calls{kSessionOnThisMachine, "KrvSessionClose"}));
}

TEST_F(CommandBaseTest, IgnoresAFailureToClose) {
    Fake().FailCall("KrvSessionClose", Occurrence::Every(), {9, "no"});
    ScriptedCommand good;
    EXPECT_EQ(RunCommand(good), "OK");
    ScriptedCommand bad;
    bad.run = Status::SystemError(6);
    EXPECT_EQ(RunCommand(bad), "error 6");
}

// Runs out of memory in its work.
class GreedyCommand : public ScriptedCommand {
  public:
    Status Run() override { throw std::bad_alloc(); }
};

TEST_F(CommandBaseTest, ClosesTheSessionWhenMemoryRunsOut) {
    GreedyCommand command;
    EXPECT_EQ(RunCommand(command), "error 12");
    EXPECT_EQ(TakeCalls(), (Calls{kSessionOnThisMachine, "KrvSessionClose"}));
}

TEST_F(CommandBaseTest, PrintsTheBannerBetweenSessionAndWork) {
    class PrintingCommand : public ScriptedCommand {
      public:
        Status Run() override {
            bannerWasShown = GetBannerFlags().bannerShown;
            return {};
        }
        bool bannerWasShown = false;
    };
    PrintingCommand command;
    EXPECT_EQ(RunCommand(command), "OK");
    EXPECT_TRUE(command.bannerWasShown);
    EXPECT_TRUE(m_output.starts_with("Carvoline - command line interface\n"));
}

TEST_F(CommandBaseTest, SetsTheQuietFlagOnlyWhenItStartsItsWork) {
    m_options = {Quiet()};
    ScriptedCommand command;
    ASSERT_TRUE(command.Initialize(m_options, m_parameters).IsOk());
    EXPECT_FALSE(GetBannerFlags().quiet);
    EXPECT_EQ(Text(command.Execute()), "OK");
    EXPECT_TRUE(GetBannerFlags().quiet);
    EXPECT_FALSE(GetBannerFlags().bannerShown);
}

}  // namespace
}  // namespace krvcmd
