#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "krvcmd/frontend/parsing/item_address.h"

namespace krvcmd {
namespace {

constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();

void SetSlot(ItemAddress& entry, int32_t number) {
    entry.slot = number;
}

ItemAddressList SlotsOf(std::vector<NumberRange> numbers) {
    ItemAddress common;
    common.jukeboxId = 8;
    return {common, SetSlot, std::move(numbers)};
}

// The slots of the first entries, `atMost` of them.
std::vector<int32_t> Slots(const ItemAddressList& list, size_t atMost = 100) {
    std::vector<int32_t> slots;
    for (const ItemAddress& entry : list) {
        EXPECT_EQ(entry.jukeboxId, 8);
        slots.push_back(entry.slot.value_or(-1));
        if (slots.size() == atMost) break;
    }
    return slots;
}

using SlotNumbers = std::vector<int32_t>;

TEST(ItemAddressList, IsEmptyByDefault) {
    const ItemAddressList list;
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_TRUE(list.begin() == ItemAddressList::end());
}

TEST(ItemAddressList, RunsThroughNumbersAndRangesInTheOrderWritten) {
    EXPECT_EQ(Slots(SlotsOf({{7, 7, false}, {3, 5, true}, {1, 1, false}})), (SlotNumbers{7, 3, 4, 5, 1}));
}

TEST(ItemAddressList, GivesEveryEntryTheCommonPart) {
    ItemAddress common;
    common.jukeboxName = "MyBox";
    common.magazine = 2;
    common.side = 1;
    const ItemAddressList list(common, SetSlot, {{4, 5, true}});
    int32_t slot = 4;
    for (const ItemAddress& entry : list) {
        EXPECT_EQ(entry.jukeboxName, "MyBox");
        EXPECT_EQ(entry.magazine, 2);
        EXPECT_EQ(entry.side, 1);
        EXPECT_EQ(entry.slot, slot++);
        EXPECT_FALSE(entry.drive.has_value());
        EXPECT_EQ(entry.volumeId, -1);
    }
    EXPECT_EQ(slot, 6);
}

TEST(ItemAddressList, HasNoEntryForAReversedRange) {
    EXPECT_TRUE(SlotsOf({{5, 3, true}}).IsEmpty());
    EXPECT_TRUE(SlotsOf({{5, 3, true}, {2, 1, true}}).IsEmpty());
    EXPECT_EQ(Slots(SlotsOf({{5, 3, true}, {7, 7, false}})), (SlotNumbers{7}));
    EXPECT_EQ(Slots(SlotsOf({{7, 7, false}, {5, 3, true}})), (SlotNumbers{7}));
}

TEST(ItemAddressList, GivesTheFirstEntryBehindReversedRanges) {
    EXPECT_EQ(SlotsOf({{5, 3, true}, {9, 8, true}, {2, 4, true}}).Front().slot, 2);
}

TEST(ItemAddressList, MakesEntriesOneAtATimeSoThatAHugeRangeCostsNothing) {
    const ItemAddressList list = SlotsOf({{1, 2'000'000'000, true}});
    EXPECT_FALSE(list.IsEmpty());
    EXPECT_EQ(list.Front().slot, 1);
    EXPECT_EQ(Slots(list, 3), (SlotNumbers{1, 2, 3}));
}

TEST(ItemAddressList, EndsBehindTheLargestNumber) {
    EXPECT_EQ(Slots(SlotsOf({{kLargest - 1, kLargest, true}})), (SlotNumbers{kLargest - 1, kLargest}));
    EXPECT_EQ(Slots(SlotsOf({{kLargest, kLargest, false}, {1, 1, false}})), (SlotNumbers{kLargest, 1}));
}

TEST(ItemAddressList, CanBeWalkedAgain) {
    const ItemAddressList list = SlotsOf({{1, 2, true}});
    EXPECT_EQ(Slots(list), (SlotNumbers{1, 2}));
    EXPECT_EQ(Slots(list), (SlotNumbers{1, 2}));
}

}  // namespace
}  // namespace krvcmd
