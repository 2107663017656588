#include <gtest/gtest.h>

#include "krvcmd/commands/base/command.h"
#include "krvcmd/console/writer/output_object.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

using test::Text;

Parameter Numbers(const char* keyword, std::vector<NumberRange> ranges) {
    return {&test::Node(keyword), ValueKind::Numbers, {}, std::move(ranges)};
}

Parameter WithText(const char* keyword, const char* text) {
    return {&test::Node(keyword), ValueKind::Text, text, {}};
}

// The look-ups of a command over a given list of parameters.
class CommandLookupsTest : public testing::Test {
  protected:
    void Take(std::vector<Parameter> parameters) {
        m_parameters = std::move(parameters);
        EXPECT_TRUE(m_command.Initialize(m_options, m_parameters, m_writer).IsOk());
    }

    std::string Int(std::string_view name) {
        int32_t value = -77;
        const Status status = m_command.GetIntParameter(name, value);
        return std::to_string(value) + " " + Text(status);
    }

    bool Has(std::string_view name) { return m_command.HasParameter(name); }

    std::string String(std::string_view name) {
        std::string value = "before";
        bool given = true;
        const Status status = m_command.GetStringParameter(name, value, given);
        return "\"" + value + "\" " + (given ? "given " : "not given ") + Text(status);
    }

  private:
    std::vector<Parameter> m_options;
    std::vector<Parameter> m_parameters;
    Ostrel::UI::Console::COutputObject m_writer;
    CCommand m_command;
};

TEST_F(CommandLookupsTest, FindNoNumberAndLeaveTheValueAlone) {
    Take({});
    EXPECT_EQ(Int("repeat"), "-77 error 2");
    Take({WithText("query.columns", "I")});
    EXPECT_EQ(Int("columns"), "-77 error 2");  // a text is no number
}

TEST_F(CommandLookupsTest, FindTheFirstNumberOfTheLastMatch) {
    Take({Numbers("import.repeat", {{3, 3, false}})});
    EXPECT_EQ(Int("repeat"), "3 OK");
    Take(
        {Numbers("import.repeat", {{3, 3, false}}), Numbers("import.repeat", {{5, 9, true}, {1, 1, false}})});
    EXPECT_EQ(Int("repeat"), "5 OK");
}

TEST_F(CommandLookupsTest, CompareTheFullKeywordWithCase) {
    Take({Numbers("import.repeat", {{3, 3, false}}),
          WithText("query.columns", "I"),
          {&test::Node("query.notable"), ValueKind::None, {}, {}}});
    EXPECT_EQ(Int("rep"), "-77 error 2");
    EXPECT_EQ(Int("Repeat"), "-77 error 2");
    EXPECT_EQ(String("col"), "\"\" not given error 2");
    EXPECT_FALSE(Has("not"));
    EXPECT_FALSE(Has("Notable"));
}

TEST_F(CommandLookupsTest, TellWhetherAKeywordIsThere) {
    Take({{&test::Node("query.notable"), ValueKind::None, {}, {}}});
    EXPECT_TRUE(Has("notable"));
    EXPECT_FALSE(Has("slots"));
    EXPECT_FALSE(Has(""));
}

TEST_F(CommandLookupsTest, FindTheTextOfTheLastMatch) {
    Take({WithText("format.label", "one"), WithText("format.label", "two")});
    EXPECT_EQ(String("label"), "\"two\" given OK");
    EXPECT_EQ(String("columns"), "\"\" not given error 2");
}

TEST_F(CommandLookupsTest, FindAnEmptyTextAsGiven) {
    Take({WithText("format.label", "one"), WithText("format.label", "")});
    EXPECT_EQ(String("label"), "\"\" given OK");
}

TEST_F(CommandLookupsTest, FindTheFreeTextByAnEmptyName) {
    Take({WithText("name.<new name>", "new"), WithText("format.label", "other")});
    EXPECT_EQ(String(""), "\"new\" given OK");
    EXPECT_EQ(String("<new name>"), "\"new\" given OK");
    Take({WithText("format.label", "other")});
    EXPECT_EQ(String(""), "\"\" not given error 2");
}

}  // namespace
}  // namespace krvcmd
