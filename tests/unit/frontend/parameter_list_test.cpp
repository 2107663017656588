#include "krvcmd/frontend/parsing/parameter_list.h"

#include <gtest/gtest.h>

#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

Parameter Numbers(std::string_view keyword, std::vector<NumberRange> ranges) {
    return {&test::Node(keyword), ValueKind::Numbers, {}, std::move(ranges)};
}

TEST(FindParameter, FindsTheLastOneOfAKeyword) {
    const std::vector<Parameter> parameters = {Numbers("query.S", {{1, 1, false}}),
                                               Numbers("query.M", {{2, 2, false}}),
                                               Numbers("query.S", {{3, 3, false}})};
    EXPECT_EQ(FindParameter(parameters, "S"), &parameters[2]);
    EXPECT_EQ(FindParameter(parameters, "M"), &parameters[1]);
    EXPECT_EQ(FindParameter(parameters, "J"), nullptr);
    EXPECT_EQ(FindParameter({}, "S"), nullptr);
}

TEST(FindParameter, ComparesTheWholeKeywordWithCase) {
    const std::vector<Parameter> parameters = {Numbers("query.S", {{1, 1, false}}),
                                               {&test::Node("query.slots"), {}, {}, {}}};
    EXPECT_EQ(FindParameter(parameters, "s"), nullptr);
    EXPECT_EQ(FindParameter(parameters, "slot"), nullptr);
    EXPECT_EQ(FindParameter(parameters, ""), nullptr);
    EXPECT_EQ(FindParameter(parameters, "slots"), &parameters[1]);
}

TEST(Parameter, IsMultipleWithAListOrWithAnyRange) {
    EXPECT_FALSE(Parameter{}.IsMultiple());
    EXPECT_FALSE(Numbers("query.S", {{1, 1, false}}).IsMultiple());
    EXPECT_TRUE(Numbers("query.S", {{1, 1, false}, {2, 2, false}}).IsMultiple());
    EXPECT_TRUE(Numbers("query.S", {{1, 3, true}}).IsMultiple());
    EXPECT_TRUE(Numbers("query.S", {{1, 1, true}}).IsMultiple());
}

}  // namespace
}  // namespace krvcmd
