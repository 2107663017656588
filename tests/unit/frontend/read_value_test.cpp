#include "krvcmd/frontend/parsing/parser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

// The value that the keyword reads from `text`: a text in quotes, numbers in braces, or the error.
std::string ValueOf(const KeywordNode& node, std::string_view text) {
    ParameterList line;
    line.parameters.push_back({&node, ValueKind::None, {}, {}});
    const Status status = ReadValue(line.parameters.front(), text);
    if (!status.IsOk()) return test::Text(status);
    // ": " and the keyword stand before it.
    return test::Serialise(line).substr(node.keyword.size() + 2);
}

struct ValueRow {
    std::string_view text;
    std::string_view expected;
};

void ExpectValues(std::string_view keyword, const std::vector<ValueRow>& rows) {
    for (const ValueRow& row : rows) {
        EXPECT_EQ(ValueOf(test::Node(keyword), row.text), row.expected) << keyword << " with " << row.text;
    }
}

TEST(ReadValue, ReadsJukeboxesByIdElseByName) {
    ExpectValues("query.J", {
                                {"@17", "={17}"},
                                {"=@17", "={17}"},
                                {"@8,11", "={8,11}"},
                                {"@8-11", "={8-11}"},
                                {"17", "=\"17\""},
                                {"=17", "=\"17\""},
                                {"MyBox", "=\"MyBox\""},
                                {"=MyBox", "=\"MyBox\""},
                                {"My Box", "=\"My Box\""},
                                {"==x", "=\"=x\""},  // one "=" is stepped over, no more
                                {"@", "=\"@\""},     // no ID, so a name
                                {"@x", "=\"@x\""},
                                {"@17x", "=\"@17x\""},
                                {"@17,", "=\"@17,\""},
                                {"@2147483648", "=\"@2147483648\""},  // does not fit, so a name
                                {"", "=\"\""},
                                {"=", "=\"\""},
                            });
}

TEST(ReadValue, ReadsVolumesByIdOnly) {
    ExpectValues("query.V", {
                                {"@273", "={273}"},
                                {"=@273", "={273}"},
                                {"@33,34-36", "={33,34-36}"},
                                {"273", "error 22"},
                                {"=273", "error 22"},
                                {"Sales", "error 22"},
                                {"@", "error 22"},
                                {"@33,@34", "error 22"},  // "@" stands once, before the list
                                {"@=33", "error 22"},
                                {"@@33", "error 22"},
                                {"", "error 22"},
                            });
}

TEST(ReadValue, ReadsListsAndRangesOfNumbers) {
    ExpectValues("query.S", {
                                {"1", "={1}"},
                                {"=1", "={1}"},
                                {"1,5,7", "={1,5,7}"},
                                {"1-5", "={1-5}"},
                                {"1/5", "={1-5}"},
                                {"5-3", "={5-3}"},
                                {"4-4", "={4-4}"},
                                {"1,3-5,9/11", "={1,3-5,9-11}"},
                                {"0", "={0}"},
                                {"1-2000000000", "={1-2000000000}"},
                                {"2147483647", "={2147483647}"},
                            });
}

TEST(ReadValue, RefusesWhatIsNoListOfNumbers) {
    ExpectValues("query.S", {
                                {"", "error 22"},
                                {"=", "error 22"},
                                {"x", "error 22"},
                                {"1x", "error 22"},
                                {"1,", "error 22"},
                                {",1", "error 22"},
                                {"1,,2", "error 22"},
                                {"1-", "error 22"},
                                {"-1", "error 22"},
                                {"1-2-3", "error 22"},
                                {"1--2", "error 22"},
                                {"1 2", "error 22"},
                                {"1, 2", "error 22"},
                                {"1;2", "error 22"},
                                {"1.5", "error 22"},
                                {"1.A", "error 22"},
                                {"@1", "error 22"},
                                {"==1", "error 22"},
                                {"1=", "error 22"},
                                {"+1", "error 22"},
                                {"2147483648", "error 22"},
                                {"1-2147483648", "error 22"},
                                {"1,99999999999999999999", "error 22"},
                            });
}

TEST(ReadValue, AcceptsListsAndRangesForSingleNumbersToo) {
    ExpectValues("query.D", {{"1,2", "={1,2}"}, {"1-3", "={1-3}"}});
    ExpectValues("import.repeat", {{"1-3", "={1-3}"}, {"=5", "={5}"}});
    ExpectValues("query.width", {{"80,132", "={80,132}"}, {"0", "={0}"}});
}

TEST(ReadValue, TakesTextsWholeWithoutOneLeadingEqualsSign) {
    ExpectValues("format.label", {
                                     {"Sales 2005", "=\"Sales 2005\""},
                                     {"=Sales 2005", "=\"Sales 2005\""},
                                     {"=", "=\"\""},
                                     {"", "=\"\""},
                                     {"==", "=\"=\""},
                                     {"=@1,2-3", "=\"@1,2-3\""},
                                     {"100%s %n", "=\"100%s %n\""},
                                     {"a=b", "=\"a=b\""},
                                 });
}

TEST(ReadValue, LeavesTheParameterWithoutAValueWhenItFails) {
    Parameter parameter;
    parameter.node = &test::Node("query.S");
    EXPECT_EQ(test::Text(ReadValue(parameter, "1,5,x")), "error 22");
    EXPECT_EQ(parameter.valueKind, ValueKind::None);
    EXPECT_TRUE(parameter.ranges.empty());
}

TEST(ReadValue, LeavesNoNumbersBehindWhenTheTextFormTakesOver) {
    Parameter parameter;
    parameter.node = &test::Node("query.J");
    ASSERT_TRUE(ReadValue(parameter, "@17,x").IsOk());
    EXPECT_EQ(parameter.valueKind, ValueKind::Text);
    EXPECT_TRUE(parameter.ranges.empty());
}

TEST(ReadValue, RefusesFormsOfAnotherType) {
    constexpr ValueSpec kUnknown[] = {{ValueSpec::kText}, {4}};
    KeywordNode node = test::MakeNode("unusable");
    node.values = kUnknown;
    Parameter parameter;
    parameter.node = &node;
    EXPECT_EQ(test::Text(ReadValue(parameter, "text")), "error 22");
}

TEST(TakesValue, IsTrueForKeywordsWithAtLeastOneForm) {
    EXPECT_TRUE(TakesValue(test::Node("query.J")));
    EXPECT_TRUE(TakesValue(test::Node("server")));
    EXPECT_TRUE(TakesValue(test::Node("help.<command>")));
    EXPECT_FALSE(TakesValue(test::Node("quiet")));
    EXPECT_FALSE(TakesValue(test::Node("format..A")));
    EXPECT_FALSE(TakesValue(test::Node("query")));
}

}  // namespace
}  // namespace krvcmd
