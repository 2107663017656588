#include "krvcmd/service/access/slot_iterator.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

using Index = std::optional<int32_t>;
constexpr auto kNone = std::nullopt;

// A jukebox with magazines of 2 and 1 slots.
class SlotIteratorTest : public test::ServiceTest {
  protected:
    SlotIteratorTest() : m_jukebox(Farm().AddJukebox(8, "Tower").WithMagazine(2).WithMagazine(1)) {}

    static std::string Show(const SlotIterator& slots) {
        const SlotPosition& position = slots.Position();
        return std::to_string(position.magazine) + "/" + std::to_string(position.slot);
    }

    static ItemAddress Address(Index magazine, Index slot, Index side = kNone, int32_t jukeboxId = 8) {
        ItemAddress address;
        address.jukeboxId = jukeboxId;
        address.magazine = magazine;
        address.slot = slot;
        address.side = side;
        return address;
    }

    // Where a walk begins, or the error of the address.
    static std::string Start(Index magazine, Index slot) {
        SlotIterator slots;
        const Status status = slots.Initialize(Address(magazine, slot));
        return status.IsOk() ? Show(slots) : Text(status);
    }

    // All positions of a walk from an address on and the status of the last step.
    static std::string Walk(WorkLevel level, Index magazine, Index slot) {
        SlotIterator slots;
        Status status = slots.Initialize(Address(magazine, slot));
        if (!status.IsOk()) return Text(status);
        slots.SetLevel(level);
        std::string text;
        for (; status.IsOk(); status = slots.Next())
            text += Show(slots) + " ";
        return text + Text(status);
    }

    krvfake::Jukebox& m_jukebox;
};

TEST_F(SlotIteratorTest, BeginsAtTheAddressedSlot) {
    EXPECT_EQ(Start(0, 0), "0/0");
    EXPECT_EQ(Start(0, 1), "0/1");
    EXPECT_EQ(Start(1, 0), "1/0");
}

TEST_F(SlotIteratorTest, BeginsAtTheFirstWhereNothingIsGiven) {
    EXPECT_EQ(Start(kNone, kNone), "0/0");
    EXPECT_EQ(Start(1, kNone), "1/0");
    EXPECT_EQ(Start(-1, 1), "0/1");  // the number 0 of a magazine is given, and is the first
    EXPECT_EQ(Start(0, -1), "0/0");
    EXPECT_EQ(Start(kNone, -1), "0/0");  // the number 0 of a slot is not numbered through the jukebox
}

TEST_F(SlotIteratorTest, CountsASlotWithoutMagazineThroughTheJukebox) {
    EXPECT_EQ(Start(kNone, 1), "0/1");
    EXPECT_EQ(Start(kNone, 2), "1/0");
    EXPECT_EQ(Start(kNone, 3), "error 22");
}

TEST_F(SlotIteratorTest, KeepsJukeboxAndSideOfTheAddress) {
    for (const Index magazine : {Index(0), Index()}) {
        SlotIterator slots;
        ASSERT_TRUE(slots.Initialize(Address(magazine, 1, kSideB)).IsOk());
        EXPECT_EQ(slots.Position().jukeboxId, 8);
        EXPECT_EQ(slots.Position().side, kSideB);
    }
}

TEST_F(SlotIteratorTest, AsksForJukeboxAndMagazineToBegin) {
    EXPECT_EQ(Start(1, 0), "1/0");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=1"}));
    EXPECT_EQ(Start(kNone, 2), "1/0");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0", "KrvGetMagazine J=8 M=1",
                                  "KrvGetJukebox J=8", "KrvGetMagazine J=8 M=1"}));
}

TEST_F(SlotIteratorTest, RefusesAMagazineThatDoesNotExistAsNoSuchItem) {
    EXPECT_EQ(Start(2, 0), "error 2");
    EXPECT_EQ(Start(2, kNone), "error 2");
    EXPECT_EQ(Start(2147483646, 0), "error 2");
}

TEST_F(SlotIteratorTest, RefusesASlotThatDoesNotExistAsInvalid) {
    EXPECT_EQ(Start(0, 2), "error 22");
    EXPECT_EQ(Start(1, 1), "error 22");
    EXPECT_EQ(Start(0, 2147483646), "error 22");
}

TEST_F(SlotIteratorTest, RefusesTheFirstSlotOfAMagazineWithoutSlots) {
    m_jukebox.magazines[0].slotCount = 0;
    EXPECT_EQ(Start(0, kNone), "error 22");
    EXPECT_EQ(Start(kNone, kNone), "error 22");
    m_jukebox.magazines[0].slotCount = -5;
    EXPECT_EQ(Start(0, kNone), "error 22");
}

TEST_F(SlotIteratorTest, RefusesToBeginInAMagazineThatCannotBeDescribed) {
    Fake().FailCall("KrvGetMagazine J=8 M=0", Occurrence::Every(), {9, "missing"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Start(0, 0), "error 22");
}

TEST_F(SlotIteratorTest, FindsNoMagazineInAJukeboxWithoutOne) {
    for (const int32_t count : {0, -3}) {
        m_jukebox.claimedMagazines = count;
        EXPECT_EQ(Start(kNone, kNone), "error 2") << count;
    }
}

TEST_F(SlotIteratorTest, HandsOnTheErrorOfAnUnknownJukebox) {
    SlotIterator slots;
    EXPECT_EQ(Text(slots.Initialize(Address(0, 0, kNone, 9))), "service error 1001: There is no jukebox 9.");
    EXPECT_EQ(Text(slots.Initialize(Address(kNone, 0, kNone, 9))),
              "service error 1001: There is no jukebox 9.");
}

TEST_F(SlotIteratorTest, WalksAllMagazinesAtLevelJukebox) {
    EXPECT_EQ(Walk(WorkLevel::Jukebox, kNone, kNone), "0/0 0/1 1/0 error 2");
}

TEST_F(SlotIteratorTest, CrossesIntoTheNextMagazineAtLevelSlot) {
    EXPECT_EQ(Walk(WorkLevel::Slot, 0, 1), "0/1 1/0 error 2");
    EXPECT_EQ(Walk(WorkLevel::Slot, kNone, 1), "0/1 1/0 error 2");
}

TEST_F(SlotIteratorTest, EndsWithTheMagazineAtLevelMagazine) {
    EXPECT_EQ(Walk(WorkLevel::Magazine, 0, kNone), "0/0 0/1 error 2");
    EXPECT_EQ(Walk(WorkLevel::Magazine, 1, kNone), "1/0 error 2");
}

TEST_F(SlotIteratorTest, AsksForAMagazineOnlyWhenItEntersIt) {
    EXPECT_EQ(Walk(WorkLevel::Jukebox, kNone, kNone), "0/0 0/1 1/0 error 2");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0", "KrvGetMagazine J=8 M=1"}));
    EXPECT_EQ(Walk(WorkLevel::Magazine, 0, kNone), "0/0 0/1 error 2");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0"}));
}

TEST_F(SlotIteratorTest, OffersTheFirstSlotOfAMagazineThatCannotBeDescribedOnce) {
    m_jukebox.WithMagazine(2);
    Fake().FailCall("KrvGetMagazine J=8 M=1", Occurrence::Every(), {9, "missing"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Walk(WorkLevel::Jukebox, kNone, kNone), "0/0 0/1 1/0 2/0 2/1 error 2");
}

TEST_F(SlotIteratorTest, OffersTheFirstSlotOfAMagazineWithoutSlotsOnce) {
    m_jukebox.WithMagazine(1);
    m_jukebox.magazines[1].slotCount = -7;
    EXPECT_EQ(Walk(WorkLevel::Slot, 0, 1), "0/1 1/0 2/0 error 2");
}

TEST_F(SlotIteratorTest, BeginsAnewWhenItIsInitializedAgain) {
    SlotIterator slots;
    ASSERT_TRUE(slots.Initialize(Address(1, 0, 0)).IsOk());
    slots.SetLevel(WorkLevel::Magazine);
    ASSERT_TRUE(slots.Initialize(Address(0, 1)).IsOk());
    EXPECT_EQ(Show(slots), "0/1");
    EXPECT_EQ(slots.Position().side, -1);
    // The level is Slot again: the walk crosses into the next magazine.
    EXPECT_TRUE(slots.Next().IsOk());
    EXPECT_EQ(Show(slots), "1/0");
}

TEST_F(SlotIteratorTest, IsNowhereBeforeItIsInitialized) {
    const SlotIterator slots;
    EXPECT_EQ(Show(slots), "-1/-1");
    EXPECT_EQ(slots.Position().jukeboxId, -1);
}

TEST_F(SlotIteratorTest, SeeksMagazineAndSlotByTheirIndexes) {
    SlotIterator slots;
    ASSERT_TRUE(slots.Initialize(Address(kNone, kNone)).IsOk());
    EXPECT_EQ(Text(slots.Seek({8, 1, 0})), "OK");
    EXPECT_EQ(Show(slots), "1/0");
    EXPECT_EQ(Text(slots.Seek({8, 1, 1})), "error 22");
    EXPECT_EQ(Text(slots.Seek({8, 2, 0})), "error 2");
}

TEST_F(SlotIteratorTest, LearnsTheNumberOfMagazinesWhenItSeeks) {
    SlotIterator slots;
    ASSERT_TRUE(slots.Initialize(Address(kNone, kNone)).IsOk());
    EXPECT_EQ(Text(slots.LoadMagazine(2)), "error 2");
    m_jukebox.WithMagazine(4);
    EXPECT_EQ(Text(slots.LoadMagazine(2)), "error 2");
    EXPECT_EQ(Text(slots.RefreshMagazineCount()), "OK");
    EXPECT_EQ(Text(slots.LoadMagazine(2)), "OK");
    EXPECT_EQ(Show(slots), "2/0");
}

TEST_F(SlotIteratorTest, KeepsTheNumberOfMagazinesWhenTheJukeboxCannotBeDescribed) {
    SlotIterator slots;
    ASSERT_TRUE(slots.Initialize(Address(kNone, kNone)).IsOk());
    Fake().FailCall("KrvGetJukebox", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Text(slots.RefreshMagazineCount()), "service error 9: no");
    EXPECT_EQ(Text(slots.LoadMagazine(1)), "OK");
}

TEST(WorkLevel, HasItsNumbers) {
    EXPECT_EQ(static_cast<int32_t>(WorkLevel::Jukebox), 0);
    EXPECT_EQ(static_cast<int32_t>(WorkLevel::Magazine), 1);
    EXPECT_EQ(static_cast<int32_t>(WorkLevel::Slot), 2);
}

}  // namespace
}  // namespace krvcmd
