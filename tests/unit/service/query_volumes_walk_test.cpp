#include "tests/unit/service/support/query_walks_test.h"

namespace krvcmd {
namespace {

using krvfake::kSideA;
using krvfake::kSideB;
using krvfake::Occurrence;
using test::Calls;
using test::Text;

// Volume 33 in jukebox 8, volume 34 at two places in jukeboxes 11 and 8, volume 35 nowhere.
class VolumeWalkTest : public test::QueryWalksTest {
  protected:
    VolumeWalkTest() {
        Farm().AddJukebox(8, "Tower").WithMagazine(5).WithMagazine(5);
        Farm().AddJukebox(11, "Desk").WithMagazine(5);
        Farm().AddVolume(33, "One").At(8, 1, 2, kSideB);
        Farm().AddVolume(34, "Two").At(11, 0, 3, kSideA).At(8, 0, 4, kSideA);
        Farm().AddVolume(35, "Offline").InState(2);
    }
};

TEST_F(VolumeWalkTest, ListsAVolumeWithItsLocation) {
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 33)), "OK");
    EXPECT_EQ(Rows("ILmsao"), "33,Tower\\2\\3.B,2,3,B,active\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeDetail V=33", "KrvVolumeAspects V=33 bufferSize=1",
                                  "KrvVolumeLocations V=33 room=1", "KrvGetJukebox J=8",
                                  "KrvGetSide J=8 M=1 S=2 side=1"}));
}

TEST_F(VolumeWalkTest, ListsAVolumeWithoutLocationOnce) {
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 35)), "OK");
    EXPECT_EQ(Rows("Io"), "35,offline\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeDetail V=35", "KrvVolumeAspects V=35 bufferSize=1",
                                  "KrvVolumeLocations V=35 room=1"}));
}

TEST_F(VolumeWalkTest, ListsOneRowForEachLocation) {
    Farm().AddVolume(36, "Twice").At(8, 0, 0, kSideA).At(8, 1, 0, kSideA);
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 36)), "OK");
    EXPECT_EQ(Rows("IL"), "36,Tower\\1\\1.A\n36,Tower\\2\\1.A\n");
}

TEST_F(VolumeWalkTest, TakesTheJukeboxOfTheFirstLocationForAllOfThem) {
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 34)), "OK");
    // Both rows show the jukebox "Desk", which has one magazine, though the second location is in "Tower".
    EXPECT_EQ(Rows("IL"), "34,Desk\\4.A\n34,Desk\\5.A\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeDetail V=34", "KrvVolumeAspects V=34 bufferSize=1",
                                  "KrvVolumeLocations V=34 room=1", "KrvVolumeLocations V=34 room=2",
                                  "KrvGetJukebox J=11", "KrvGetSide J=11 M=0 S=3 side=0",
                                  "KrvGetJukebox J=11", "KrvGetSide J=8 M=0 S=4 side=0"}));
}

TEST_F(VolumeWalkTest, TakesTheJukeboxThatItIsGivenForEveryLocation) {
    EXPECT_EQ(Text(Walks().ListVolume(MakeJukeboxKey(8), 34)), "OK");
    EXPECT_EQ(Rows("IL"), "34,Tower\\1\\4.A\n34,Tower\\1\\5.A\n");
}

TEST_F(VolumeWalkTest, AddsNoRowForAVolumeThatCannotBeDescribed) {
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 99)),
              "service error 1001: There is no volume 99.");
    EXPECT_EQ(Rows("I"), "");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeDetail V=99"}));
}

TEST_F(VolumeWalkTest, AddsNoRowWhenTheAspectsFail) {
    Fake().FailCall("KrvVolumeAspects", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 33)), "service error 9: no");
    EXPECT_EQ(Rows("I"), "");
}

TEST_F(VolumeWalkTest, AddsNoRowWhenTheLocationsFail) {
    Fake().FailCall("KrvVolumeLocations", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 33)), "service error 9: no");
    EXPECT_EQ(Rows("I"), "");
    EXPECT_EQ(TakeCalls().back(), "KrvVolumeLocations V=33 room=1");
}

TEST_F(VolumeWalkTest, GoesOnBehindALocationThatFailed) {
    Fake().FailCall("KrvGetSide J=11 M=0 S=3 side=0", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 34)), "OK");
    EXPECT_EQ(Rows("L"), "Desk\\5.A\n");
}

TEST_F(VolumeWalkTest, ReportsTheFailureOfTheLastLocation) {
    Fake().FailCall("KrvGetSide J=8 M=0 S=4 side=0", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 34)), "service error 9: no");
    EXPECT_EQ(Rows("L"), "Desk\\4.A\n");
}

TEST_F(VolumeWalkTest, AsksForNoSideWhenTheJukeboxOfALocationCannotBeDescribed) {
    Fake().FailCall("KrvGetJukebox", Occurrence::Nth(1), {9, "no"});
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 34)), "OK");
    EXPECT_EQ(Rows("L"), "Desk\\5.A\n");
    EXPECT_EQ(TakeCalls().size(), 4U + 3U);
}

TEST_F(VolumeWalkTest, AddsNoRowForASideThatCannotBeReadAtALocation) {
    Fake().FailCall("KrvGetSide", Occurrence::Every(), {3, "unreadable"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 33)), "service error 3: unreadable");
    EXPECT_EQ(Rows("I"), "");
}

TEST_F(VolumeWalkTest, ShowsTheFirstDirectoryOfAVolume) {
    Farm().FindVolume(33)->WithDirectory("dir1/volume33").WithDirectory("other");
    EXPECT_EQ(Text(Walks().ListVolume(QueryWalks::kNoJukebox, 33)), "OK");
    EXPECT_EQ(Rows("n"), "dir1/volume33\n");
}

TEST_F(VolumeWalkTest, ListsAllVolumesInTheOrderOfTheEnumeration) {
    EXPECT_EQ(Text(Walks().ListAllVolumes()), "OK");
    EXPECT_EQ(Rows("Il"), "33,One\n34,Two\n34,Two\n35,Offline\n");
    const Calls calls = TakeCalls();
    EXPECT_EQ(calls.front(), "KrvGetNextVolume previous=0");
    EXPECT_EQ(calls.back(), "KrvGetNextVolume previous=35");
}

TEST_F(VolumeWalkTest, EndsTheEnumerationAtTheFirstVolumeThatFails) {
    Fake().FailCall("KrvVolumeDetail V=34", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Text(Walks().ListAllVolumes()), "service error 9: no");
    EXPECT_EQ(Rows("I"), "33\n");
    EXPECT_EQ(TakeCalls().back(), "KrvVolumeDetail V=34");
}

TEST_F(VolumeWalkTest, ReportsNoErrorWhenTheEnumerationFails) {
    Fake().FailCall("KrvGetNextVolume", Occurrence::Nth(2), {9, "no"});
    EXPECT_EQ(Text(Walks().ListAllVolumes()), "OK");
    EXPECT_EQ(Rows("I"), "33\n");
}

TEST_F(VolumeWalkTest, EndsWhenTheEnumerationRepeatsAVolumeForEver) {
    Farm().EnumerateVolumes({33, 35}, true);
    EXPECT_EQ(Text(Walks().ListAllVolumes()), "OK");
    EXPECT_EQ(Rows("I"), "33\n35\n");
}

}  // namespace
}  // namespace krvcmd
