#include <array>

#include "krvcmd/commands/actions/able_command.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::kSideA;
using krvfake::kSideB;
using krvfake::Occurrence;
using test::Calls;
using test::Words;

// Jukebox 31 with two magazines of three slots and a drive. Slot 3 of the second magazine carries a volume on
// each side, slot 2 of the first one on side B only.
class AbleTest : public test::CommandTest {
  protected:
    AbleTest() {
        Farm().AddJukebox(31, "Tower").WithDrive({}).WithMagazine(3).WithMagazine(3);
        Farm().AddVolume(33, "a").At(31, 1, 2, kSideA);
        Farm().AddVolume(34, "b").At(31, 1, 2, kSideB);
        Farm().AddVolume(35, "c").At(31, 0, 1, kSideB);
    }

    // Runs "enable" and "disable" with the words. In the expected calls "Activate" stands for the call of
    // each: with "disable" it becomes "Deactivate".
    void ExpectBoth(const Words& words, const std::string& status, const Calls& calls) {
        for (const char* command : {"enable", "disable"}) {
            Words line = {command};
            line.insert(line.end(), words.begin(), words.end());
            Calls expected = {status};
            for (std::string call : calls) {
                const size_t verb = call.find("Activate");
                if (command == std::string_view("disable") && verb != std::string::npos)
                    call.replace(verb, 1, "Dea");
                expected.push_back(call);
            }
            EXPECT_EQ(StatusAndCalls(line), expected);
        }
    }

    void Fail(const std::string& call) { Fake().FailCall(call, Occurrence::Every(), {9, "no"}); }

    const std::string m_resolve = "KrvGetJukebox J=31";
};

TEST_F(AbleTest, SwitchesJukeboxes) {
    ExpectBoth({"J@31"}, "OK", {m_resolve, "KrvActivateJukebox J=31"});
    ExpectBoth({"J", "Tower"}, "OK", {"KrvGetNextJukebox previous=0", m_resolve, "KrvActivateJukebox J=31"});
}

TEST_F(AbleTest, SwitchesMagazines) {
    ExpectBoth({"J@31", "M2"}, "OK", {m_resolve, "KrvActivateMagazine J=31 M=1"});
    ExpectBoth({"J@31", "M1-2"}, "OK",
               {m_resolve, "KrvActivateMagazine J=31 M=0", "KrvActivateMagazine J=31 M=1"});
    ExpectBoth({"J@31", "M0"}, "OK", {m_resolve, "KrvActivateMagazine J=31 M=-1"});
}

TEST_F(AbleTest, SwitchesDrives) {
    ExpectBoth({"J@31", "D1"}, "OK", {m_resolve, "KrvActivateDrive J=31 D=0"});
    ExpectBoth({"J@31", "D2,1"}, "OK", {m_resolve, "KrvActivateDrive J=31 D=1"});
}

TEST_F(AbleTest, SwitchesVolumesWithoutAJukebox) {
    ExpectBoth({"V@33"}, "OK", {"KrvVolumeActivate V=33"});
    ExpectBoth({"V@33,35-36"}, "OK",
               {"KrvVolumeActivate V=33", "KrvVolumeActivate V=35", "KrvVolumeActivate V=36"});
}

TEST_F(AbleTest, SwitchesTheVolumesOnBothSidesOfASlot) {
    ExpectBoth({"J@31", "M2", "S3"}, "OK",
               {m_resolve, m_resolve, "KrvGetMagazine J=31 M=1", "KrvGetSide J=31 M=1 S=2 side=0",
                "KrvVolumeActivate V=33", "KrvGetSide J=31 M=1 S=2 side=1", "KrvVolumeActivate V=34"});
}

// A command line can only name side A or B, or none.
TEST_F(AbleTest, RefusesAnUnknownSideOnceTheSlotIsFound) {
    struct Row {
        int32_t side;
        const char* status;
        Calls sides;
    };
    const std::string a = "KrvGetSide J=31 M=0 S=1 side=0";
    const std::string b = "KrvGetSide J=31 M=0 S=1 side=1";
    const std::string volume = "KrvVolumeActivate V=35";
    const Row rows[] = {{-2, "error 22", {}},   {-1, "OK", {a, b, volume}}, {0, "OK", {a}},
                        {1, "OK", {b, volume}}, {2, "OK", {a, b, volume}},  {3, "error 22", {}}};
    const CEnable enable;
    for (const Row& row : rows) {
        ItemAddress slot;
        slot.jukeboxId = 31;
        slot.magazine = 0;
        slot.slot = 1;
        slot.side = row.side;
        EXPECT_EQ(test::Text(enable.SetSlotVolumesActive(slot)), row.status) << row.side;
        Calls expected = {m_resolve, "KrvGetMagazine J=31 M=0"};
        expected.insert(expected.end(), row.sides.begin(), row.sides.end());
        EXPECT_EQ(TakeCalls(), expected) << row.side;
    }
}

TEST_F(AbleTest, PassesOverASideWithoutAVolume) {
    ExpectBoth({"J@31", "M1", "S2"}, "OK",
               {m_resolve, m_resolve, "KrvGetMagazine J=31 M=0", "KrvGetSide J=31 M=0 S=1 side=0",
                "KrvGetSide J=31 M=0 S=1 side=1", "KrvVolumeActivate V=35"});
}

TEST_F(AbleTest, FindsASlotNumberedThroughTheJukebox) {
    ExpectBoth({"J@31", "S6"}, "OK",
               {m_resolve, m_resolve, "KrvGetMagazine J=31 M=0", "KrvGetMagazine J=31 M=1", m_resolve,
                "KrvGetMagazine J=31 M=1", "KrvGetSide J=31 M=1 S=2 side=0", "KrvVolumeActivate V=33",
                "KrvGetSide J=31 M=1 S=2 side=1", "KrvVolumeActivate V=34"});
}

TEST_F(AbleTest, ReportsASlotThatDoesNotExist) {
    ExpectBoth({"J@31", "M1", "S4"}, "error 22", {m_resolve, m_resolve, "KrvGetMagazine J=31 M=0"});
    ExpectBoth({"J@31", "M3", "S1"}, "error 2", {m_resolve, m_resolve});
}

TEST_F(AbleTest, EndsTheSlotAtTheFirstSideThatFails) {
    Fail("KrvGetSide J=31 M=1 S=2 side=0");
    ExpectBoth({"J@31", "M2", "S3"}, "service error 9: no",
               {m_resolve, m_resolve, "KrvGetMagazine J=31 M=1", "KrvGetSide J=31 M=1 S=2 side=0"});
}

TEST_F(AbleTest, EndsTheSlotAtTheFirstVolumeThatFails) {
    Fail("KrvVolumeActivate V=33");
    Fail("KrvVolumeDeactivate V=33");
    ExpectBoth({"J@31", "M2", "S3"}, "service error 9: no",
               {m_resolve, m_resolve, "KrvGetMagazine J=31 M=1", "KrvGetSide J=31 M=1 S=2 side=0",
                "KrvVolumeActivate V=33"});
}

TEST_F(AbleTest, TakesASideThatCannotBeReadAsAFailure) {
    Fake().FailCall("KrvGetSide", Occurrence::Every(), {3, "unreadable"}, krvfake::Outputs::Filled);
    ExpectBoth({"J@31", "M2", "S3"}, "service error 3: unreadable",
               {m_resolve, m_resolve, "KrvGetMagazine J=31 M=1", "KrvGetSide J=31 M=1 S=2 side=0"});
}

TEST_F(AbleTest, StopsAtTheFirstEntryThatFails) {
    Fail("KrvVolumeActivate V=34");
    Fail("KrvVolumeDeactivate V=34");
    ExpectBoth({"V@33,34,35"}, "service error 9: no", {"KrvVolumeActivate V=33", "KrvVolumeActivate V=34"});
    ExpectBoth({"J@31", "S9,2"}, "error 22",
               {m_resolve, m_resolve, "KrvGetMagazine J=31 M=0", "KrvGetMagazine J=31 M=1"});
}

TEST_F(AbleTest, GoesOnBehindAnErrorWithCodeZero) {
    Fake().FailCall("KrvVolumeActivate V=33", Occurrence::Every(), {0, "odd"});
    EXPECT_EQ(StatusAndCalls({"enable", "V@33,34"}),
              (Calls{"OK", "KrvVolumeActivate V=33", "KrvVolumeActivate V=34"}));
    EXPECT_EQ(StatusAndCalls({"enable", "V@34,33"}).front(), "service error 0: odd");
}

TEST_F(AbleTest, HasNoCodeThatMeansDone) {
    for (const int32_t code : {2, 4, 501, 502}) {
        Fake().FailCall("KrvActivateJukebox", Occurrence::Nth(1), {code, "no"});
        EXPECT_EQ(StatusAndCalls({"enable", "J@31"}).front(),
                  "service error " + std::to_string(code) + ": no");
        Fake().Reset();
        Farm().AddJukebox(31, "Tower");
    }
}

TEST_F(AbleTest, DoesNothingWithoutAnAddress) {
    ExpectBoth({}, "OK", {});
    ExpectBoth({"V@5-3"}, "OK", {});
}

TEST_F(AbleTest, ChangesNothingWhenTheJukeboxIsUnknown) {
    ExpectBoth({"J", "nobody"}, "error 6",
               {"KrvGetNextJukebox previous=0", m_resolve, "KrvGetNextJukebox previous=31"});
    ExpectBoth({"J@9", "M1"}, "service error 1001: There is no jukebox 9.", {"KrvGetJukebox J=9"});
}

TEST_F(AbleTest, NeedsAJukeboxForADrive) {
    EXPECT_EQ(Run({"enable", "D1"}).status, "error 22");
    EXPECT_EQ(Run({"disable", "D1"}).calls, Calls{});
}

}  // namespace
}  // namespace krvcmd
