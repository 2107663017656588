#include "krvcmd/service/query/query_walks.h"
#include "tests/unit/service/support/query_walks_test.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

// What a query of jukeboxes, magazines and drives looks up, and which rows it adds.
class ItemWalksTest : public test::QueryWalksTest {
  protected:
    ItemWalksTest() {
        Farm()
            .AddJukebox(8, "Tower")
            .WithDrive({"HP", "C1716T", "3404", {0, 4, 1}})
            .WithDrive({"HP", "C1716T", "3405", {0, 4, 2}}, false)
            .WithMagazine(3)
            .WithMissingMagazine(2)
            .WithMagazine(1);
        Farm().AddJukebox(11, "Desk").WithMagazine(4);
    }
};

TEST_F(ItemWalksTest, ListOneJukebox) {
    EXPECT_EQ(Text(Walks().ListJukeboxes(11)), "OK");
    EXPECT_EQ(Rows("JNoDMS"), "11,Desk,active,0,1,4\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=11"}));
}

TEST_F(ItemWalksTest, ListAllJukeboxesWithoutAnId) {
    EXPECT_EQ(Text(Walks().ListJukeboxes(-1)), "OK");
    EXPECT_EQ(Rows("JN"), "8,Tower\n11,Desk\n");
    EXPECT_EQ(TakeCalls(),
              (Calls{"KrvGetNextJukebox previous=0", "KrvGetJukebox J=8", "KrvGetNextJukebox previous=8",
                     "KrvGetJukebox J=11", "KrvGetNextJukebox previous=11"}));
}

TEST_F(ItemWalksTest, TakeAJukeboxIdBelowOneAsNoId) {
    EXPECT_EQ(Text(Walks().ListJukeboxes(0)), "OK");
    EXPECT_EQ(Rows("J"), "8\n11\n");
}

TEST_F(ItemWalksTest, StopAtTheFirstJukeboxThatCannotBeDescribed) {
    Fake().FailCall("KrvGetJukebox", Occurrence::Nth(1), {9, "no"});
    EXPECT_EQ(Text(Walks().ListJukeboxes(-1)), "service error 9: no");
    EXPECT_EQ(Rows("J"), "");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetNextJukebox previous=0", "KrvGetJukebox J=8"}));
}

TEST_F(ItemWalksTest, KeepTheRowsBeforeTheJukeboxThatFailed) {
    Fake().FailCall("KrvGetJukebox", Occurrence::Nth(2), {9, "no"});
    EXPECT_EQ(Text(Walks().ListJukeboxes(-1)), "service error 9: no");
    EXPECT_EQ(Rows("J"), "8\n");
}

TEST_F(ItemWalksTest, ReportNoErrorWhenTheFirstStepOfTheEnumerationFails) {
    Fake().FailCall("KrvGetNextJukebox", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Text(Walks().ListJukeboxes(-1)), "OK");
    EXPECT_EQ(Rows("J"), "");
}

TEST_F(ItemWalksTest, ListAllMagazinesOfAJukebox) {
    EXPECT_EQ(Text(Walks().ListMagazines(8)), "OK");
    EXPECT_EQ(Rows("JNmSo"), "8,Tower,1,3,available\n8,Tower,2,2,n/a\n8,Tower,3,1,available\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0", "KrvGetMagazine J=8 M=1",
                                  "KrvGetMagazine J=8 M=2"}));
}

TEST_F(ItemWalksTest, GoOnBehindAMagazineThatCannotBeDescribed) {
    Fake().FailCall("KrvGetMagazine J=8 M=0", Occurrence::Every(), {9, "first"});
    EXPECT_EQ(Text(Walks().ListMagazines(8)), "service error 9: first");
    EXPECT_EQ(Rows("m"), "2\n3\n");
}

TEST_F(ItemWalksTest, ReportTheLastMagazineThatFailed) {
    Fake().FailCall("KrvGetMagazine J=8 M=0", Occurrence::Every(), {9, "first"});
    Fake().FailCall("KrvGetMagazine J=8 M=1", Occurrence::Every(), {10, "second"});
    EXPECT_EQ(Text(Walks().ListMagazines(8)), "service error 10: second");
    EXPECT_EQ(Rows("m"), "3\n");
}

TEST_F(ItemWalksTest, ListNoMagazinesOfAJukeboxThatHasNone) {
    for (const int32_t count : {0, -1}) {
        Farm().FindJukebox(8)->claimedMagazines = count;
        EXPECT_EQ(Text(Walks().ListMagazines(8)), "OK");
        EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8"}));
    }
}

TEST_F(ItemWalksTest, HandOnTheErrorOfAnUnknownJukebox) {
    const std::string unknown = "service error 1001: There is no jukebox 9.";
    EXPECT_EQ(Text(Walks().ListJukeboxes(9)), unknown);
    EXPECT_EQ(Text(Walks().ListMagazines(9)), unknown);
    EXPECT_EQ(Text(Walks().ListDrives(9)), unknown);
    EXPECT_EQ(Text(Walks().ListDrive({12, 9, 0})), unknown);
    EXPECT_EQ(Text(Walks().ListSlot({9, 0, 0, kUnset})), unknown);
    EXPECT_EQ(TakeCalls(), Calls(5, "KrvGetJukebox J=9"));
}

TEST_F(ItemWalksTest, ListAllDrivesAskingForTheJukeboxBeforeEach) {
    EXPECT_EQ(Text(Walks().ListDrives(8)), "OK");
    EXPECT_EQ(Rows("JNdoPCR"),
              "8,Tower,1,active,HP C1716T,0/4/1,3404\n8,Tower,2,disabled,HP C1716T,0/4/2,3405\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetJukebox J=8", "KrvGetDrive J=8 D=0",
                                  "KrvGetJukebox J=8", "KrvGetDrive J=8 D=1"}));
}

TEST_F(ItemWalksTest, ReportNoSuchItemForAJukeboxWithoutDrives) {
    EXPECT_EQ(Text(Walks().ListDrives(11)), "error 2");
    EXPECT_EQ(Rows("d"), "");
    Farm().FindJukebox(11)->claimedDrives = -4;
    EXPECT_EQ(Text(Walks().ListDrives(11)), "error 2");
}

TEST_F(ItemWalksTest, ReportTheResultOfTheLastDrive) {
    Fake().FailCall("KrvGetDrive J=8 D=0", Occurrence::Every(), {9, "first"});
    EXPECT_EQ(Text(Walks().ListDrives(8)), "OK");
    EXPECT_EQ(Rows("d"), "2\n");
}

TEST_F(ItemWalksTest, ReportAFailureOfTheLastDrive) {
    Fake().FailCall("KrvGetDrive J=8 D=1", Occurrence::Every(), {9, "second"});
    EXPECT_EQ(Text(Walks().ListDrives(8)), "service error 9: second");
    EXPECT_EQ(Rows("d"), "1\n");
}

TEST_F(ItemWalksTest, ListASingleDrive) {
    EXPECT_EQ(Text(Walks().ListDrive({12, 8, 1})), "OK");
    EXPECT_EQ(Rows("d"), "2\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetDrive J=8 D=1"}));
}

TEST_F(ItemWalksTest, HandOnTheErrorOfADriveThatDoesNotExist) {
    EXPECT_EQ(Text(Walks().ListDrive({12, 8, 2})), "service error 1001: There is no drive 2.");
    EXPECT_EQ(Rows("d"), "");
}

}  // namespace
}  // namespace krvcmd
