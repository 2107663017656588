// Not on Windows: standard streams are captured through POSIX; nothing tested here depends on the system.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/frontend/parsing/parser.h"
#include "tests/reliability/memory/refused_allocations.h"

namespace krvcmd::reliability {
namespace {

// What parsing a command line costs in memory.
struct Cost {
    size_t requests = 0;
    size_t bytes = 0;

    bool operator==(const Cost&) const = default;
};

// The cost of parsing, of listing the addressed items, and of reading the first two of them.
Cost CostOf(const std::vector<const char*>& words) {
    constexpr size_t kRefuseNone = 0x7FFFFFFF;
    ParameterList line;
    AddressKind kind{};
    ItemAddressList addresses;
    const RefusedAllocations memory(kRefuseNone, RefusedAllocations::Refuse::Once);
    EXPECT_TRUE(ParseCommandLine(words, line).IsOk());
    EXPECT_TRUE(ReadItemAddress(line.parameters, kind, addresses).IsOk());
    ItemAddressList::Iterator entry = addresses.begin();
    EXPECT_FALSE(entry == addresses.end());
    ++entry;
    EXPECT_FALSE(entry == addresses.end());
    return {RefusedAllocations::Requests(), RefusedAllocations::Bytes()};
}

TEST(ParsingMemory, IsTheSameForALongRangeAsForAShortOne) {
    EXPECT_EQ(CostOf({"export", "J@8", "S1-2"}), CostOf({"export", "J@8", "S1-2000000000"}));
    EXPECT_EQ(CostOf({"export", "V@1-2"}), CostOf({"export", "V@1-2147483647"}));
    EXPECT_EQ(CostOf({"scan", "J@8", "M", "0-9"}), CostOf({"scan", "J@8", "M", "0/2147483647"}));
    EXPECT_EQ(CostOf({"scan", "J@8", "S1-2,5,7-9"}), CostOf({"scan", "J@8", "S1-2000,50,7-99"}));
}

TEST(ParsingMemory, GrowsWithTheElementsOfAListOnly) {
    const Cost one = CostOf({"export", "J@8", "S1-1000000000"});
    const Cost three = CostOf({"export", "J@8", "S1-10,20-30,5"});
    EXPECT_GT(three.bytes, one.bytes);
}

}  // namespace
}  // namespace krvcmd::reliability
