#include "tests/unit/service/support/query_walks_test.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

// One magazine: slot 0 empty, 1 to 3 in the other states without a disc that can be read, 4 with a volume
// on each side, 5 with one on side A only.
class SlotWalkTest : public test::QueryWalksTest {
  protected:
    SlotWalkTest() {
        Farm()
            .AddJukebox(8, "Tower")
            .DoubleSided()
            .WithMagazine(6)
            .WithSlot(0, 1, krvfake::slot_state::kUnknown, 254)
            .WithSlot(0, 2, krvfake::slot_state::kNotPresent)
            .WithSlot(0, 3, krvfake::slot_state::kScanFailed, 12);
        Farm().AddVolume(33, "Left").At(8, 0, 4, krvfake::kSideA);
        Farm().AddVolume(34, "Right").At(8, 0, 4, krvfake::kSideB);
        Farm().AddVolume(35, "Single").At(8, 0, 5, krvfake::kSideA);
    }

    Status ListSlot(int32_t slot, int32_t side = kUnset) { return Walks().ListSlot({8, 0, slot, side}); }

    // The calls of a volume that lies at one place in jukebox 8, magazine 0.
    static Calls CallsOfVolume(const std::string& volume, const std::string& slotAndSide) {
        return {"KrvVolumeDetail V=" + volume, "KrvVolumeAspects V=" + volume + " bufferSize=1",
                "KrvVolumeLocations V=" + volume + " room=1", "KrvGetJukebox J=8",
                "KrvGetSide J=8 M=0 " + slotAndSide};
    }

    static Calls Joined(const std::vector<Calls>& parts) {
        Calls calls;
        for (const Calls& part : parts)
            calls.insert(calls.end(), part.begin(), part.end());
        return calls;
    }

    const std::string m_sideA = "KrvGetSide J=8 M=0 S=4 side=0";
    const std::string m_sideB = "KrvGetSide J=8 M=0 S=4 side=1";
};

TEST_F(SlotWalkTest, ListsTheVolumesOfBothSidesOfAFullSlot) {
    EXPECT_EQ(Text(ListSlot(4)), "OK");
    EXPECT_EQ(Rows("Ilsa"), "33,Left,5,A\n34,Right,5,B\n");
    EXPECT_EQ(TakeCalls(), Joined({{"KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=4", m_sideA},
                                   CallsOfVolume("33", "S=4 side=0"),
                                   {m_sideB},
                                   CallsOfVolume("34", "S=4 side=1")}));
}

TEST_F(SlotWalkTest, LooksAtTheSideThatIsAskedForOnly) {
    EXPECT_EQ(Text(ListSlot(4, 0)), "OK");
    EXPECT_EQ(Rows("I"), "33\n");
    EXPECT_EQ(TakeCalls(), Joined({{"KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=4", m_sideA},
                                   CallsOfVolume("33", "S=4 side=0")}));
    EXPECT_EQ(Text(ListSlot(4, 1)), "OK");
    EXPECT_EQ(TakeCalls(), Joined({{"KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=4", m_sideB},
                                   CallsOfVolume("34", "S=4 side=1")}));
}

TEST_F(SlotWalkTest, LooksAtBothSidesForEveryOtherSide) {
    for (const int32_t side : {2, -1, 7, -5}) {
        EXPECT_EQ(Text(ListSlot(4, side)), "OK") << side;
        EXPECT_EQ(TakeCalls().size(), 14U) << side;  // two calls, then six for each side
    }
}

TEST_F(SlotWalkTest, AddsNoRowForASideWithoutAVolume) {
    EXPECT_EQ(Text(ListSlot(5)), "OK");
    EXPECT_EQ(Rows("I"), "35\n");
}

TEST_F(SlotWalkTest, AddsARowForASlotWithoutAReadableDisc) {
    for (const int32_t slot : {1, 2, 3})
        EXPECT_EQ(Text(ListSlot(slot)), "OK");
    EXPECT_EQ(Rows("JNsot"),
              "8,Tower,2,unknown,<unknown>\n8,Tower,3,not present,\n8,Tower,4,scan failed,DVD-RAM\n");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=1", "KrvGetJukebox J=8",
                                  "KrvGetSlot J=8 M=0 S=2", "KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=3"}));
}

TEST_F(SlotWalkTest, AddsARowForASlotInAStateThatNobodyKnows) {
    Farm().FindJukebox(8)->WithSlot(0, 0, 77, 255);
    EXPECT_EQ(Text(ListSlot(0)), "OK");
    EXPECT_EQ(Rows("s"), "1\n");
}

TEST_F(SlotWalkTest, NeverListsAnEmptySlot) {
    EXPECT_EQ(Text(ListSlot(0)), "OK");
    EXPECT_EQ(Rows("s"), "");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=0"}));
}

TEST_F(SlotWalkTest, AddsNoSlotRowWhenVolumesAreListed) {
    Walks().SetSlotRows(QueryWalks::SlotRows::LeaveOut);
    for (const int32_t slot : {0, 1, 2, 3})
        EXPECT_EQ(Text(ListSlot(slot)), "OK");
    EXPECT_EQ(Rows("s"), "");
    EXPECT_EQ(Text(ListSlot(4)), "OK");
    EXPECT_EQ(Rows("s"), "5\n5\n");
}

TEST_F(SlotWalkTest, HandsOnTheErrorOfTheSlot) {
    Fake().FailCall("KrvGetSlot", Occurrence::Every(), {3, "slot"});
    // Code 3 is no error only where sides are looked at.
    EXPECT_EQ(Text(ListSlot(4)), "service error 3: slot");
}

TEST_F(SlotWalkTest, TakesASideThatCannotBeReadAsNoError) {
    Fake().FailCall("KrvGetSide", Occurrence::Every(), {3, "unreadable"});
    EXPECT_EQ(Text(ListSlot(4)), "OK");
    EXPECT_EQ(Rows("I"), "");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetSlot J=8 M=0 S=4", m_sideA, m_sideB}));
}

TEST_F(SlotWalkTest, ListsTheVolumeOfASideThatCannotBeReadWhenItIsNamed) {
    // The first question of each side fails, but names the volume; the question for its location succeeds.
    Fake().FailCall(m_sideA, Occurrence::Nth(1), {3, "unreadable"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Text(ListSlot(4, 0)), "OK");
    EXPECT_EQ(Rows("I"), "33\n");
}

TEST_F(SlotWalkTest, GoesOnToSideBWhenSideAFails) {
    Fake().FailCall(m_sideA, Occurrence::Every(), {9, "broken"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Text(ListSlot(4)), "OK");  // side B's success replaces the failure
    EXPECT_EQ(Rows("I"), "34\n");
}

TEST_F(SlotWalkTest, ReportsTheFailureOfTheLaterSide) {
    Fake().FailCall(m_sideB, Occurrence::Every(), {9, "broken"});
    EXPECT_EQ(Text(ListSlot(4)), "service error 9: broken");
    EXPECT_EQ(Rows("I"), "33\n");
}

TEST_F(SlotWalkTest, ReportsTheFailureOfAVolume) {
    Fake().FailCall("KrvVolumeDetail V=34", Occurrence::Every(), {9, "broken"});
    EXPECT_EQ(Text(ListSlot(4)), "service error 9: broken");
    EXPECT_EQ(Rows("I"), "33\n");
}

TEST_F(SlotWalkTest, TakesCode3OfAVolumeAsNoErrorEither) {
    Fake().FailCall("KrvVolumeDetail V=34", Occurrence::Every(), {3, "unreadable"});
    EXPECT_EQ(Text(ListSlot(4)), "OK");
}

TEST_F(SlotWalkTest, ShowsTheMagazineOnlyInAJukeboxWithSeveral) {
    EXPECT_EQ(Text(ListSlot(3)), "OK");
    Farm().FindJukebox(8)->WithMagazine(1);
    EXPECT_EQ(Text(ListSlot(3)), "OK");
    EXPECT_EQ(Rows("ms"), ",4\n1,4\n");
}

}  // namespace
}  // namespace krvcmd
