#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/sdk/keys.h"
#include "krvcmd/service/sdk/records.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

// The presets of every record are held by the scripted library, which every test of this kind asks for
// complaints at its end.
class ItemLookupTest : public test::ServiceTest {
  protected:
    ItemLookupTest() {
        Farm()
            .AddJukebox(8, "Tower")
            .WithDrive({"HP", "C1716T", "3404", {0, 4, 1}})
            .WithMagazine(10)
            .WithMissingMagazine(5)
            .WithSlot(0, 2, krvfake::kSlotScanFailed, 5)
            .WithSide(0, 2, krvfake::kSideB, {3, 12, 1, 33});
    }
};

TEST_F(ItemLookupTest, DescribesAJukeboxTogetherWithItsId) {
    JukeboxInfo jukebox;
    EXPECT_EQ(Text(GetJukebox(8, jukebox)), "OK");
    EXPECT_EQ(jukebox.key.jukeboxId, 8);
    EXPECT_EQ(RecordText(jukebox.record.name), "Tower");
    EXPECT_EQ(jukebox.record.driveCount, 1);
    EXPECT_EQ(jukebox.record.magazineCount, 2);
    EXPECT_EQ(jukebox.record.slotCount, 15);
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8"}));
}

TEST_F(ItemLookupTest, ForgetsWhatTheJukeboxRecordHeldBefore) {
    JukeboxInfo jukebox;
    ASSERT_TRUE(GetJukebox(8, jukebox).IsOk());
    EXPECT_EQ(Text(GetJukebox(9, jukebox)), "service error 1001: There is no jukebox 9.");
    EXPECT_EQ(jukebox.key.jukeboxId, 9);
    EXPECT_EQ(jukebox.record.size, 120U);
    EXPECT_EQ(jukebox.record.driveCount, -1);
    EXPECT_EQ(jukebox.record.magazineCount, -1);
    EXPECT_EQ(RecordText(jukebox.record.name), "");
}

TEST_F(ItemLookupTest, DescribesMagazinesAndDrives) {
    MagazineRecord magazine;
    EXPECT_EQ(Text(GetMagazineInfo(8, 1, magazine)), "OK");
    EXPECT_EQ(magazine.slotCount, 5);
    EXPECT_EQ(magazine.present, 0U);
    DriveRecord drive;
    EXPECT_EQ(Text(GetDriveInfo(8, 0, drive)), "OK");
    EXPECT_EQ(RecordText(drive.identity.product), "C1716T");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetMagazine J=8 M=1", "KrvGetDrive J=8 D=0"}));
}

TEST_F(ItemLookupTest, DescribesSlotsAndSides) {
    SlotRecord slot;
    EXPECT_EQ(Text(GetSlotInfo(8, 0, 2, slot)), "OK");
    EXPECT_EQ(slot.state, krvfake::kSlotScanFailed);
    EXPECT_EQ(slot.mediumCode, 5U);
    SideRecord side;
    EXPECT_EQ(Text(GetSideInfo(MakeSideKey(8, 0, 2, 1), side)), "OK");
    EXPECT_EQ(side.state, 3U);
    EXPECT_EQ(side.mediumCode, 12U);
    EXPECT_EQ(side.finalization, 1U);
    EXPECT_EQ(side.volumeId, 33);
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetSlot J=8 M=0 S=2", "KrvGetSide J=8 M=0 S=2 side=1"}));
}

TEST_F(ItemLookupTest, HandsNumbersThatAreNotSetToTheLibraryAsTheyAre) {
    SlotRecord slot;
    EXPECT_EQ(Text(GetSlotInfo(8, -1, 2, slot)), "OK");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetSlot J=8 M=-1 S=2"}));
}

TEST_F(ItemLookupTest, LeavesThePresetsWhenTheLibraryFailsWithoutAnAnswer) {
    Fake().FailCall("*", Occurrence::Every(), {3, "unreadable"});
    SideRecord side{};
    EXPECT_EQ(Text(GetSideInfo(MakeSideKey(8, 0, 2, 1), side)), "service error 3: unreadable");
    EXPECT_EQ(side.volumeId, -1);
    EXPECT_EQ(side.mediumCode, 254U);
    SlotRecord slot{};
    EXPECT_EQ(Text(GetSlotInfo(8, 0, 2, slot)), "service error 3: unreadable");
    EXPECT_EQ(slot.mediumCode, 254U);
    MagazineRecord magazine{};
    EXPECT_EQ(Text(GetMagazineInfo(8, 0, magazine)), "service error 3: unreadable");
    EXPECT_EQ(magazine.slotCount, -1);
    DriveRecord drive{};
    EXPECT_EQ(Text(GetDriveInfo(8, 0, drive)), "service error 3: unreadable");
    EXPECT_EQ(drive.size, 72U);
}

TEST_F(ItemLookupTest, KeepsWhatAFailingLibraryHasFilledIn) {
    Fake().FailCall("KrvGetSide", Occurrence::Every(), {3, "unreadable"}, krvfake::Outputs::Filled);
    SideRecord side{};
    EXPECT_EQ(Text(GetSideInfo(MakeSideKey(8, 0, 2, 1), side)), "service error 3: unreadable");
    EXPECT_EQ(side.volumeId, 33);
}

TEST_F(ItemLookupTest, ChecksAJukeboxWithOneQuestion) {
    EXPECT_EQ(Text(CheckJukebox(8)), "OK");
    EXPECT_EQ(Text(CheckJukebox(9)), "service error 1001: There is no jukebox 9.");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetJukebox J=9"}));
}

TEST(Keys, LeaveEverythingUnsetThatIsNotGiven) {
    const SideKey key = UnsetSideKey();
    EXPECT_EQ(key.size, 20U);
    EXPECT_EQ(key.jukeboxId, -1);
    EXPECT_EQ(key.magazine, -1);
    EXPECT_EQ(key.slot, -1);
    EXPECT_EQ(key.side, -1);
}

TEST(Keys, CarryTheirSizes) {
    EXPECT_EQ(MakeJukeboxKey(1).size, 8U);
    EXPECT_EQ(MakeMagazineKey(1, 2).size, 12U);
    EXPECT_EQ(MakeDriveKey(1, 2).size, 12U);
    EXPECT_EQ(MakeSlotKey(1, 2, 3).size, 16U);
    EXPECT_EQ(MakeSideKey(1, 2, 3, 0).size, 20U);
}

}  // namespace
}  // namespace krvcmd
