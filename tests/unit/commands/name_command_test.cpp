#include "krvcmd/commands/actions/name_command.h"

#include "krvcmd/commands/factory/command_factory.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;

class NameTest : public test::CommandTest {
  protected:
    NameTest() { Farm().AddJukebox(31, "Tower").WithDrive({}).WithMagazine(3); }
};

TEST_F(NameTest, RenamesAJukebox) {
    EXPECT_EQ(StatusAndCalls({"name", "J@31", "My New Jukebox Name"}),
              (Calls{"OK", "KrvGetJukebox J=31", "KrvJukeboxSetName J=31 name=\"My New Jukebox Name\""}));
    EXPECT_EQ(StatusAndCalls({"name", "J", "Tower", "x"}),
              (Calls{"OK", "KrvGetNextJukebox previous=0", "KrvGetJukebox J=31",
                     "KrvJukeboxSetName J=31 name=\"x\""}));
}

// The scripted library complains unless the last argument of KrvVolumeSetAspects is 1.
TEST_F(NameTest, SetsTheDirectoryOfAVolume) {
    EXPECT_EQ(StatusAndCalls({"name", "V@273", "dir1/volume273"}),
              (Calls{"OK", "KrvVolumeSetAspects V=273 text=\"dir1/volume273\""}));
}

TEST_F(NameTest, TakesTheLastNewNameFromAnywhereAfterTheCommand) {
    EXPECT_EQ(StatusAndCalls({"name", "dir1/volume273", "V@273"}),
              (Calls{"OK", "KrvVolumeSetAspects V=273 text=\"dir1/volume273\""}));
    EXPECT_EQ(StatusAndCalls({"name", "V@273", "one", "two"}),
              (Calls{"OK", "KrvVolumeSetAspects V=273 text=\"two\""}));
}

TEST_F(NameTest, HandsOverAnEmptyTextWithoutANewName) {
    EXPECT_EQ(StatusAndCalls({"name", "J@31"}),
              (Calls{"OK", "KrvGetJukebox J=31", "KrvJukeboxSetName J=31 name=\"\""}));
    EXPECT_EQ(StatusAndCalls({"name", "V@273"}), (Calls{"OK", "KrvVolumeSetAspects V=273 text=\"\""}));
}

TEST_F(NameTest, GoesOnAfterAFailureAndReportsTheLastEntry) {
    Fake().FailCall("KrvVolumeSetAspects V=33 text=\"d\"", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(StatusAndCalls({"name", "V@33,35", "d"}),
              (Calls{"OK", "KrvVolumeSetAspects V=33 text=\"d\"", "KrvVolumeSetAspects V=35 text=\"d\""}));
    EXPECT_EQ(StatusAndCalls({"name", "V@35,33", "d"}).front(), "service error 9: no");
}

TEST_F(NameTest, EndsAtAnUnknownJukebox) {
    EXPECT_EQ(StatusAndCalls({"name", "J", "nobody", "x"}).front(), "error 6");
    EXPECT_EQ(StatusAndCalls({"name", "J@9", "x"}),
              (Calls{"service error 1001: There is no jukebox 9.", "KrvGetJukebox J=9"}));
}

TEST_F(NameTest, DoesNothingWithoutAnAddress) {
    EXPECT_EQ(StatusAndCalls({"name", "x"}), (Calls{"OK"}));
    EXPECT_EQ(StatusAndCalls({"name", "V@5-3", "x"}), (Calls{"OK"}));
}

TEST_F(NameTest, RefusesEveryOtherAddressForm) {
    // The grammar offers "name" no M, S or D, so these parameters are handed over directly.
    const auto parameter = [](const char* keyword) {
        return Parameter{&test::Node(keyword), ValueKind::Numbers, {}, {{31, 31, false}}};
    };
    for (const char* keyword : {"query.M", "query.S", "query.D"}) {
        ParameterList line;
        line.command = &test::Node("name");
        line.parameters = {parameter("query.J"), parameter(keyword)};
        std::unique_ptr<CCommand> command;
        ASSERT_TRUE(CreateCommand(line.command, command).IsOk());
        ASSERT_TRUE(command->Initialize(line.options, line.parameters, Writer()).IsOk());
        EXPECT_EQ(test::Text(command->Run()), "error 22") << keyword;
        EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=31"})) << keyword;
    }
}

using DeleteTest = test::CommandTest;

TEST_F(DeleteTest, OpensAndClosesTheSessionAndChangesNothing) {
    const std::vector<Parameter> options;
    const std::vector<Parameter> volume = {
        {&test::Node("query.V"), ValueKind::Numbers, {}, {{33, 33, false}}}};
    GetBannerFlags() = {false, true};
    for (const std::vector<Parameter>& parameters : {std::vector<Parameter>{}, volume}) {
        CDelete command;
        ASSERT_TRUE(command.Initialize(options, parameters, Writer()).IsOk());
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
