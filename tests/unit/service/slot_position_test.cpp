#include "krvcmd/service/access/slot_iterator.h"

#include <limits>

#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

class SlotFromAbsoluteTest : public test::ServiceTest {
  protected:
    // A jukebox with magazines of 3, 1 and 2 slots.
    SlotFromAbsoluteTest()
        : m_jukebox(Farm().AddJukebox(8, "Tower").WithMagazine(3).WithMagazine(1).WithMagazine(2)) {}

    // J/M/S/side, or the error.
    static std::string Found(int32_t absoluteSlot, int32_t jukebox = 8) {
        SlotPosition position;
        const Status status =
            SlotFromAbsolute(MakeAbsoluteSlotKey(MakeJukeboxKey(jukebox), absoluteSlot), kSideB, position);
        if (!status.IsOk()) return Text(status);
        return std::to_string(position.jukeboxId) + "/" + std::to_string(position.magazine) + "/" +
               std::to_string(position.slot) + "/" + std::to_string(position.side);
    }

    krvfake::Jukebox& m_jukebox;
};

TEST_F(SlotFromAbsoluteTest, CountsThroughTheMagazines) {
    const std::string_view expected[] = {"8/0/0/1", "8/0/1/1", "8/0/2/1", "8/1/0/1", "8/2/0/1", "8/2/1/1"};
    for (int32_t slot = 0; slot < 6; ++slot)
        EXPECT_EQ(Found(slot), expected[slot]);
}

TEST_F(SlotFromAbsoluteTest, AsksNoFurtherThanTheMagazineThatHoldsTheSlot) {
    EXPECT_EQ(Found(3), "8/1/0/1");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0", "KrvGetMagazine J=8 M=1"}));
}

TEST_F(SlotFromAbsoluteTest, RefusesANumberBeyondTheLastSlot) {
    EXPECT_EQ(Found(6), "error 22");
    EXPECT_EQ(Found(std::numeric_limits<int32_t>::max()), "error 22");
}

TEST_F(SlotFromAbsoluteTest, RefusesANumberBelowTheFirstSlot) {
    EXPECT_EQ(Found(-1), "error 22");
}

TEST_F(SlotFromAbsoluteTest, StopsAtAMagazineThatCannotBeDescribed) {
    Fake().FailCall("KrvGetMagazine J=8 M=1", Occurrence::Every(), {9, "missing"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Found(2), "8/0/2/1");
    EXPECT_EQ(Found(3), "error 22");
    EXPECT_EQ(Found(5), "error 22");
    EXPECT_EQ(TakeCalls().back(), "KrvGetMagazine J=8 M=1");
}

TEST_F(SlotFromAbsoluteTest, StopsAtAMagazineWithoutSlots) {
    m_jukebox.magazines[1].slotCount = 0;
    EXPECT_EQ(Found(2), "8/0/2/1");
    EXPECT_EQ(Found(3), "error 22");
}

TEST_F(SlotFromAbsoluteTest, CountsTheSlotsOfAMagazineThatIsNotPresentAsTold) {
    m_jukebox.magazines[1].present = false;
    EXPECT_EQ(Found(4), "8/2/0/1");
}

TEST_F(SlotFromAbsoluteTest, HandsOnTheErrorOfAnUnknownJukebox) {
    EXPECT_EQ(Found(0, 9), "service error 1001: There is no jukebox 9.");
}

TEST_F(SlotFromAbsoluteTest, FindsNothingWithoutMagazines) {
    for (const int32_t count : {0, -1, std::numeric_limits<int32_t>::min()}) {
        m_jukebox.claimedMagazines = count;
        EXPECT_EQ(Found(0), "error 22") << count;
    }
}

TEST_F(SlotFromAbsoluteTest, AddsUpHugeCountsWithoutOverflow) {
    constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
    for (krvfake::Magazine& magazine : m_jukebox.magazines)
        magazine.slotCount = kLargest;
    EXPECT_EQ(Found(kLargest), "8/1/0/1");
    for (krvfake::Magazine& magazine : m_jukebox.magazines) {
        magazine.slotCount = std::numeric_limits<int32_t>::min();
    }
    EXPECT_EQ(Found(0), "error 22");
}

TEST_F(SlotFromAbsoluteTest, EndsAtTheFirstMissingMagazineHoweverManyAreClaimed) {
    m_jukebox.claimedMagazines = 2'000'000'000;
    EXPECT_EQ(Found(6), "error 22");
    EXPECT_EQ(TakeCalls().size(), 1U + 4U);
}

TEST(SlotPosition, IsUnsetAtFirst) {
    const SlotPosition position;
    EXPECT_EQ(position.jukeboxId, -1);
    EXPECT_EQ(position.magazine, -1);
    EXPECT_EQ(position.slot, -1);
    EXPECT_EQ(position.side, -1);
}

}  // namespace
}  // namespace krvcmd
