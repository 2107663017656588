#include <algorithm>

#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::kSideA;
using krvfake::kSideB;
using krvfake::Occurrence;
using test::Calls;
using test::Outcome;
using test::Words;

// Which items a query looks up for each form of address. Jukebox 8 has magazines of 2 and 1 slots; volume 33
// lies in slot 2 of the first, 34 in the second. Jukebox 11 has one magazine with a slot that is not present.
class QueryGatherTest : public test::CommandTest {
  protected:
    QueryGatherTest() {
        Farm()
            .AddJukebox(8, "Tower")
            .WithDrive({"HP", "A", "1", {}})
            .WithDrive({"HP", "B", "2", {}})
            .WithMagazine(2)
            .WithMagazine(1);
        Farm().AddJukebox(11, "Desk").WithMagazine(1).WithSlot(0, 0, krvfake::slot_state::kNotPresent);
        Farm().AddVolume(33, "One").At(8, 0, 1, kSideA);
        Farm().AddVolume(34, "Two").At(8, 1, 0, kSideB);
    }

    // Status and rows of a query, with the columns of the letters, in the order of the look-ups.
    std::string Rows(Words words, const char* columns) {
        const std::string option = std::string("columns=") + columns;
        words.insert(words.begin(), "query");
        for (const char* word : {option.c_str(), "sort=", "notable"})
            words.push_back(word);
        const Outcome outcome = Work(words);
        m_calls = outcome.calls;
        return outcome.status == "OK" ? outcome.output : outcome.output + outcome.status;
    }

    // The slots that the last query asked for, as J/M/S.
    std::string SlotsAskedFor() const {
        std::string text;
        for (const std::string& call : m_calls) {
            if (call.starts_with("KrvGetSlot ")) text += "(" + call.substr(11) + ")";
        }
        return text;
    }

    Calls m_calls;
};

TEST_F(QueryGatherTest, ListsOneJukeboxOrAll) {
    EXPECT_EQ(Rows({"jukeboxes"}, "JN"), "8|Tower\n11|Desk\n");
    EXPECT_EQ(Rows({"jukeboxes", "J@11"}, "JN"), "11|Desk\n");
    EXPECT_EQ(Rows({"jukeboxes", "J", "Tower"}, "JN"), "8|Tower\n");
}

TEST_F(QueryGatherTest, ListsTheWholeJukeboxForANarrowerAddress) {
    EXPECT_EQ(Rows({"jukeboxes", "J@8", "M1", "S1"}, "J"), "8\n");
    EXPECT_EQ(Rows({"magazines", "J@8", "M1"}, "m"), "1\n2\n");
    EXPECT_EQ(Rows({"drives", "J@8", "M1"}, "d"), "1\n2\n");
}

TEST_F(QueryGatherTest, ListsTheMagazinesOfOneJukeboxOrOfAll) {
    EXPECT_EQ(Rows({"magazines", "J@8"}, "Jm"), "8|1\n8|2\n");
    EXPECT_EQ(Rows({"magazines"}, "Jm"), "8|1\n8|2\n11|1\n");
}

TEST_F(QueryGatherTest, StopsAtTheFirstJukeboxWhoseMagazinesFail) {
    Fake().FailCall("KrvGetMagazine J=8 M=0", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Rows({"magazines"}, "Jm"), "8|2\nservice error 9: no");
}

TEST_F(QueryGatherTest, ListsTheDrivesOfOneJukeboxOrOfAll) {
    EXPECT_EQ(Rows({"drives", "J@8"}, "Jd"), "8|1\n8|2\n");
    // Jukebox 11 has none, which is an error, but the last one.
    EXPECT_EQ(Rows({"drives"}, "Jd"), "8|1\n8|2\nerror 2");
}

TEST_F(QueryGatherTest, StopsAtTheFirstJukeboxWithoutDrives) {
    Farm().EnumerateJukeboxes({11, 8});
    EXPECT_EQ(Rows({"drives"}, "Jd"), "error 2");
}

TEST_F(QueryGatherTest, PrintsNothingForAJukeboxWithoutDrives) {
    const Outcome outcome = Work({"query", "drives", "J@11"});
    EXPECT_EQ(outcome.status, "error 2");
    EXPECT_EQ(outcome.output, "");
}

TEST_F(QueryGatherTest, ListsASingleDrive) {
    EXPECT_EQ(Rows({"drives", "J@8", "D2"}, "Jd"), "8|2\n");
    EXPECT_EQ(m_calls, (Calls{"KrvGetJukebox J=8", "KrvGetJukebox J=8", "KrvGetDrive J=8 D=1"}));
    EXPECT_EQ(Rows({"drives", "J@8", "D3"}, "Jd"), "service error 1001: There is no drive 2.");
    EXPECT_EQ(Rows({"drives", "J@8", "D0"}, "Jd"), "service error 1001: There is no drive -1.");
}

TEST_F(QueryGatherTest, TakesAVolumeAddressAsNoAddressWhereVolumesDoNotMatter) {
    EXPECT_EQ(Rows({"jukeboxes", "V@33"}, "J"), "8\n11\n");
    EXPECT_EQ(Rows({"magazines", "V@33"}, "Jm"), "8|1\n8|2\n11|1\n");
    EXPECT_EQ(Rows({"drives", "V@33"}, "Jd"), "8|1\n8|2\nerror 2");
}

TEST_F(QueryGatherTest, WalksAllSlotsOfAllJukeboxes) {
    EXPECT_EQ(Rows({"slots"}, "Jso"), "|2|active\n|1|active\n11|1|not present\n");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=0)(J=8 M=0 S=1)(J=8 M=1 S=0)(J=11 M=0 S=0)");
}

TEST_F(QueryGatherTest, StopsAtTheFirstJukeboxWhoseSlotsFail) {
    Fake().FailCall("KrvGetSlot J=8 M=1 S=0", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Rows({"slots"}, "s"), "2\nservice error 9: no");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=0)(J=8 M=0 S=1)(J=8 M=1 S=0)");
}

TEST_F(QueryGatherTest, AsksTheVolumesThemselvesWithoutAnAddress) {
    EXPECT_EQ(Rows({"volumes"}, "IL"), "33|Tower\\1\\2.A\n34|Tower\\2\\1.B\n");
    EXPECT_EQ(SlotsAskedFor(), "");
}

TEST_F(QueryGatherTest, WalksJukeboxMagazineAndSlots) {
    EXPECT_EQ(Rows({"slots", "J@8"}, "I"), "33\n34\n");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=0)(J=8 M=0 S=1)(J=8 M=1 S=0)");
    EXPECT_EQ(Rows({"slots", "J@8", "M1"}, "I"), "33\n");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=0)(J=8 M=0 S=1)");
    EXPECT_EQ(Rows({"slots", "J@8", "M2,1"}, "I"), "34\n33\n");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=1 S=0)(J=8 M=0 S=0)(J=8 M=0 S=1)");
    EXPECT_EQ(Rows({"slots", "J@8", "M1", "S2"}, "I"), "33\n");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=1)");
    EXPECT_EQ(Rows({"slots", "J@8", "S2-3"}, "I"), "33\n34\n");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=1)(J=8 M=1 S=0)");
}

TEST_F(QueryGatherTest, ListsVolumesOnlyWhereVolumesAreAskedFor) {
    EXPECT_EQ(Rows({"slots", "J@11"}, "so"), "1|not present\n");
    EXPECT_EQ(Rows({"volumes", "J@11"}, "so"), "");
    EXPECT_EQ(Rows({"volumes", "J@8"}, "I"), "33\n34\n");
}

TEST_F(QueryGatherTest, ListsVolumesByTheirIdsWithoutAJukebox) {
    EXPECT_EQ(Rows({"volumes", "V@34,33"}, "I"), "34\n33\n");
    EXPECT_EQ(m_calls.front(), "KrvVolumeDetail V=34");
    EXPECT_EQ(Rows({"slots", "V@33-34"}, "I"), "33\n34\n");
}

TEST_F(QueryGatherTest, ReportsTheLastEntryOfTheAddress) {
    EXPECT_EQ(Rows({"volumes", "V@99,33"}, "I"), "33\n");
    EXPECT_EQ(Rows({"volumes", "V@33,99"}, "I"), "33\nservice error 1001: There is no volume 99.");
    EXPECT_EQ(Rows({"slots", "J@8", "S9,2"}, "I"), "33\n");
    EXPECT_EQ(Rows({"slots", "J@8", "S2,9"}, "I"), "33\nerror 22");
}

TEST_F(QueryGatherTest, AsksForASlotWithASideDirectly) {
    EXPECT_EQ(Rows({"slots", "J@8", "M1", "S2", ".A"}, "I"), "33\n");
    EXPECT_EQ(Calls(m_calls.begin(), m_calls.begin() + 4),
              (Calls{"KrvGetJukebox J=8", "KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=1",
                     "KrvGetSide J=8 M=0 S=1 side=0"}));
    EXPECT_EQ(Rows({"slots", "J@8", "M1", "S2", ".B"}, "I"), "");
    EXPECT_EQ(m_calls, (Calls{"KrvGetJukebox J=8", "KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=1",
                              "KrvGetSide J=8 M=0 S=1 side=1"}));
}

TEST_F(QueryGatherTest, LeavesAMissingMagazineOfASlotWithASideToTheLibrary) {
    EXPECT_EQ(Rows({"slots", "J@8", "S3", ".B"}, "I"), "34\n");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=-1 S=2)");
}

TEST_F(QueryGatherTest, KeepsZerosOfASlotWithASide) {
    (void)Rows({"slots", "J@8", "M0", "S0", ".A"}, "I");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=0)");
}

TEST_F(QueryGatherTest, TakesBothSidesTogetherAsNoSide) {
    EXPECT_EQ(Rows({"slots", "J@8", "M1", "S2", ".A", ".B"}, "I"), "33\n");
    EXPECT_EQ(std::count(m_calls.begin(), m_calls.end(), "KrvGetSide J=8 M=0 S=1 side=1"), 1);
}

TEST_F(QueryGatherTest, RefusesADriveWhereSlotsOrVolumesAreAskedFor) {
    EXPECT_EQ(Rows({"slots", "J@8", "D1"}, "I"), "error 22");
    EXPECT_EQ(m_calls, (Calls{"KrvGetJukebox J=8"}));
    EXPECT_EQ(Rows({"volumes", "J@8", "D1"}, "I"), "error 22");
}

TEST_F(QueryGatherTest, EndsAtOnceWhenTheJukeboxCannotBeResolved) {
    for (const char* object : {"jukeboxes", "magazines", "slots", "drives", "volumes"}) {
        const Outcome outcome = Work({"query", object, "J", "nobody"});
        EXPECT_EQ(outcome.status, "error 6") << object;
        EXPECT_EQ(outcome.output, "") << object;
    }
    EXPECT_EQ(StatusAndCalls({"query", "slots", "J@99"}),
              (Calls{"service error 1001: There is no jukebox 99.", "KrvGetJukebox J=99"}));
}

TEST_F(QueryGatherTest, MakesNoCallForAnAddressThatNamesNothing) {
    for (const char* object : {"jukeboxes", "magazines", "slots", "drives", "volumes"}) {
        EXPECT_EQ(StatusAndCalls({"query", object, "J@8", "S5-3"}), (Calls{"OK"})) << object;
        EXPECT_EQ(StatusAndCalls({"query", object, "V@5-3"}), (Calls{"OK"})) << object;
    }
}

TEST_F(QueryGatherTest, DoesNotStopASlotWalkAtCode501) {
    Fake().FailCall("KrvGetSlot J=8 M=0 S=0", Occurrence::Every(), {501, "empty"});
    EXPECT_EQ(Rows({"slots", "J@8"}, "I"), "33\n34\n");
}

TEST_F(QueryGatherTest, PassesOverSlotsWithCode502AndStopsAtEveryOtherError) {
    Fake().FailCall("KrvGetSlot J=8 M=0 S=0", Occurrence::Every(), {502, "not usable"});
    EXPECT_EQ(Rows({"slots", "J@8"}, "I"), "33\n34\n");
    Fake().FailCall("KrvGetSlot J=8 M=0 S=1", Occurrence::Every(), {7, "interrupted"});
    EXPECT_EQ(Rows({"slots", "J@8"}, "I"), "service error 7: interrupted");
    EXPECT_EQ(SlotsAskedFor(), "(J=8 M=0 S=0)(J=8 M=0 S=1)");
}

TEST_F(QueryGatherTest, EndsWithSuccessWhenNoSideCanBeRead) {
    Fake().FailCall("KrvGetSide", Occurrence::Every(), {3, "unreadable"});
    EXPECT_EQ(Rows({"slots", "J@8"}, "I"), "");
}

TEST_F(QueryGatherTest, ShowsTheRowsGatheredBeforeAFailure) {
    Fake().FailCall("KrvVolumeDetail V=34", Occurrence::Every(), {9, "no"});
    const Outcome outcome = Work({"query", "volumes", "columns=I"});
    EXPECT_EQ(outcome.status, "service error 9: no");
    EXPECT_EQ(outcome.output, " Vol ID \n--------\n     33 \n\n");
}

TEST_F(QueryGatherTest, ListsAVolumeThatLiesNowhereWithoutLocation) {
    Farm().AddVolume(35, "Offline").InState(2);
    // A column that no row fills is left out.
    EXPECT_EQ(Rows({"volumes", "V@35"}, "ILo"), "35|offline\n");
    EXPECT_EQ(Rows({"volumes", "V@33,35"}, "ILo"), "33|Tower\\1\\2.A|active\n35||offline\n");
}

}  // namespace
}  // namespace krvcmd
