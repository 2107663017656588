#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/sdk/keys.h"
#include "krvcmd/service/sdk/records.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

constexpr SlotKey kSlot{sizeof(SlotKey), 8, 0, 2};

// The presets of every record are checked by the scripted library; every test of this kind asks it for
// complaints at its end.
class ItemLookupTest : public test::ServiceTest {
  protected:
    ItemLookupTest() {
        Farm()
            .AddJukebox(8, "Tower")
            .WithDrive({"HP", "C1716T", "3404", {0, 4, 1}})
            .WithMagazine(10)
            .WithMissingMagazine(5)
            .WithSlot(0, 2, krvfake::slot_state::kScanFailed, 5)
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
    EXPECT_EQ(Text(GetMagazineInfo({12, 8, 1}, magazine)), "OK");
    EXPECT_EQ(magazine.slotCount, 5);
    EXPECT_EQ(magazine.present, 0U);
    DriveRecord drive;
    EXPECT_EQ(Text(GetDriveInfo({12, 8, 0}, drive)), "OK");
    EXPECT_EQ(RecordText(drive.identity.product), "C1716T");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetMagazine J=8 M=1", "KrvGetDrive J=8 D=0"}));
}

TEST_F(ItemLookupTest, DescribesSlotsAndSides) {
    SlotRecord slot;
    EXPECT_EQ(Text(GetSlotInfo(kSlot, slot)), "OK");
    EXPECT_EQ(slot.state, krvfake::slot_state::kScanFailed);
    EXPECT_EQ(slot.mediumCode, 5U);
    SideRecord side;
    EXPECT_EQ(Text(GetSideInfo(MakeSideKey(kSlot, kSideB), side)), "OK");
    EXPECT_EQ(side.state, 3U);
    EXPECT_EQ(side.mediumCode, 12U);
    EXPECT_EQ(side.finalization, 1U);
    EXPECT_EQ(side.volumeId, 33);
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetSlot J=8 M=0 S=2", "KrvGetSide J=8 M=0 S=2 side=1"}));
}

TEST_F(ItemLookupTest, HandsNumbersThatAreNotSetToTheLibraryAsTheyAre) {
    SlotRecord slot;
    EXPECT_EQ(Text(GetSlotInfo(MakeAbsoluteSlotKey(MakeJukeboxKey(8), 2), slot)), "OK");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetSlot J=8 M=-1 S=2"}));
}

TEST_F(ItemLookupTest, LeavesThePresetsWhenTheLibraryFailsWithoutAnAnswer) {
    Fake().FailCall("*", Occurrence::Every(), {3, "unreadable"});
    SideRecord side{};
    EXPECT_EQ(Text(GetSideInfo(MakeSideKey(kSlot, kSideB), side)), "service error 3: unreadable");
    EXPECT_EQ(side.volumeId, -1);
    EXPECT_EQ(side.mediumCode, 254U);
    SlotRecord slot{};
    EXPECT_EQ(Text(GetSlotInfo(kSlot, slot)), "service error 3: unreadable");
    EXPECT_EQ(slot.mediumCode, 254U);
    MagazineRecord magazine{};
    EXPECT_EQ(Text(GetMagazineInfo({12, 8, 0}, magazine)), "service error 3: unreadable");
    EXPECT_EQ(magazine.slotCount, -1);
    DriveRecord drive{};
    EXPECT_EQ(Text(GetDriveInfo({12, 8, 0}, drive)), "service error 3: unreadable");
    EXPECT_EQ(drive.size, 72U);
}

TEST_F(ItemLookupTest, KeepsWhatAFailingLibraryHasFilledIn) {
    Fake().FailCall("KrvGetSide", Occurrence::Every(), {3, "unreadable"}, krvfake::Outputs::Filled);
    SideRecord side{};
    EXPECT_EQ(Text(GetSideInfo(MakeSideKey(kSlot, kSideB), side)), "service error 3: unreadable");
    EXPECT_EQ(side.volumeId, 33);
}

TEST_F(ItemLookupTest, ChecksAJukeboxWithOneQuestion) {
    EXPECT_EQ(Text(CheckJukebox(8)), "OK");
    EXPECT_EQ(Text(CheckJukebox(9)), "service error 1001: There is no jukebox 9.");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetJukebox J=9"}));
}

TEST(Keys, LeaveEverythingUnsetThatIsNotGiven) {
    const SideKey key = kUnsetSideKey;
    EXPECT_EQ(key.size, 20U);
    EXPECT_EQ(key.jukeboxId, -1);
    EXPECT_EQ(key.magazine, -1);
    EXPECT_EQ(key.slot, -1);
    EXPECT_EQ(key.side, -1);
}

TEST(Keys, CarryTheirSizesAndTheNumbersOfWhatTheItemBelongsTo) {
    const JukeboxKey jukebox = MakeJukeboxKey(8);
    EXPECT_EQ(jukebox.size, 8U);
    EXPECT_EQ(jukebox.jukeboxId, 8);
    const DriveKey drive = MakeDriveKey(jukebox, 3);
    EXPECT_EQ(drive.size, 12U);
    EXPECT_EQ(drive.jukeboxId, 8);
    EXPECT_EQ(drive.drive, 3);
    const MagazineKey magazine = MakeMagazineKey(jukebox, 1);
    EXPECT_EQ(magazine.size, 12U);
    EXPECT_EQ(magazine.jukeboxId, 8);
    EXPECT_EQ(magazine.magazine, 1);
    const SlotKey slot = MakeSlotKey(magazine, 2);
    EXPECT_EQ(slot.size, 16U);
    EXPECT_EQ(slot.jukeboxId, 8);
    EXPECT_EQ(slot.magazine, 1);
    EXPECT_EQ(slot.slot, 2);
    const SideKey side = MakeSideKey(slot, kSideB);
    EXPECT_EQ(side.size, 20U);
    EXPECT_EQ(side.jukeboxId, 8);
    EXPECT_EQ(side.magazine, 1);
    EXPECT_EQ(side.slot, 2);
    EXPECT_EQ(side.side, 1);
}

TEST(Keys, NumberAnAbsoluteSlotWithoutAMagazine) {
    const SlotKey slot = MakeAbsoluteSlotKey(MakeJukeboxKey(8), 2);
    EXPECT_EQ(slot.jukeboxId, 8);
    EXPECT_EQ(slot.magazine, -1);
    EXPECT_EQ(slot.slot, 2);
}

}  // namespace
}  // namespace krvcmd
