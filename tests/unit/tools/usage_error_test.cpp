#include "tools/common/usage_error.h"

#include <gtest/gtest.h>

#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimUsageError : public ToolFixture {
  protected:
    // Expects the message and the hint, in this order.
    static void ExpectRefused(const std::vector<std::string>& words, const std::string& message) {
        EXPECT_EQ(WrongUsage(words), "krvsim: " + message + "\nRun with --help for more information.\n");
    }
};

TEST_F(KrvsimUsageError, UnknownCommandsComeWithTheNearestOne) {
    ExpectRefused({"dmup"}, "unknown command \"dmup\"; did you mean \"dump\"?");
    ExpectRefused({"snapshots-of"}, "unknown command \"snapshots-of\"; did you mean \"snapshots\"?");
    ExpectRefused({"fault", "ad"}, "unknown command \"ad\"; did you mean \"add\"?");
    ExpectRefused({"bogus"}, "unknown command \"bogus\"");
}

TEST_F(KrvsimUsageError, UnknownOptionsComeWithTheNearestOne) {
    ExpectRefused({"dump", "--formt", "json"}, "unknown option \"--formt\"; did you mean \"--format\"?");
    ExpectRefused({"dump", "--sevrer=x"}, "unknown option \"--sevrer\"; did you mean \"--server\"?");
    ExpectRefused({"load", "--jukebx", "@8", "--type", "CD-R"},
                  "unknown option \"--jukebx\"; did you mean \"--jukebox\"?");
    ExpectRefused({"dump", "--quietly"}, "unknown option \"--quietly\"");
    ExpectRefused({"init", "--lay", "x"}, "unknown option \"--lay\"; did you mean \"--layout\"?");
}

TEST_F(KrvsimUsageError, WordsBeyondThoseThatACommandTakesAreNamed) {
    ExpectRefused({"servers", "first", "second"}, "unexpected word \"first\"");
}

TEST_F(KrvsimUsageError, MissingWordsAreNamed) {
    ExpectRefused({"fault"}, "a command is missing; the commands are add, list, clear");
    ExpectRefused({"fault", "add"}, "--function is required");
    ExpectRefused({"snapshot"}, "NAME is required");
    ExpectRefused({"load", "--jukebox"}, "--jukebox needs a value");
}

TEST_F(KrvsimUsageError, OptionsGivenTwiceAreNamed) {
    ExpectRefused({"dump", "--server", "a", "--server", "b"}, "--server is given more than once");
}

TEST_F(KrvsimUsageError, WrongValuesAreExplained) {
    ExpectRefused({"dump", "--format", "yaml"}, "--format: \"yaml\" is not toml, json or html");
    ExpectRefused({"generate", "--fill", "101"}, "--fill: \"101\" is not a number from 0 to 100");
    ExpectRefused({"generate", "--fill", "many"}, "--fill: \"many\" is not a number from 0 to 100");
    ExpectRefused({"run", "--code", "0", "--each-fault", "--", "true"},
                  "--code: \"0\" is not a number from 1 to 2147483647");
    ExpectRefused({"generate", "--seed", "x"}, "--seed: \"x\" is not a whole number");
    ExpectRefused({"fault", "clear", "one"}, "FAULT: \"one\" is not a whole number");
    ExpectRefused({"journal", "--json=maybe"}, "--json takes no value");
    ExpectRefused({"fault", "add", "--function", "any", "--side", "C", "--code", "1"},
                  "--side: \"C\" is not A or B");
    ExpectRefused({"fault", "add", "--function", "any", "--probability", "7", "--code", "1"},
                  "--probability: \"7\" is not a number from 0 to 1");
}

TEST_F(KrvsimUsageError, OptionsThatDoNotFitTogetherAreNamed) {
    ExpectRefused({"journal", "--on", "--off"}, "--on excludes --off");
    ExpectRefused({"dump", "--from", "."}, "--from requires --library");
}

TEST(NearestWord, IsTheOneWithTheFewestMistakes) {
    using embedded::tools::NearestWord;
    EXPECT_EQ(NearestWord("ab", {"cd", "ac"}), "ac") << "one letter is another";
    EXPECT_EQ(NearestWord("clnoe", {"check", "clone"}), "clone") << "two letters are exchanged";
    EXPECT_EQ(NearestWord("joural", {"journal"}), "journal") << "a letter is missing";
    EXPECT_EQ(NearestWord("journnal", {"journal"}), "journal") << "a letter is doubled";
    EXPECT_EQ(NearestWord("jo", {"dump", "journals", "journal"}), "journal") << "it is abbreviated";
    EXPECT_EQ(NearestWord("--j", {"--journal"}), "") << "one letter says nothing";
    EXPECT_EQ(NearestWord("xyzzy", {"dump", "run"}), "") << "nothing is near";
    EXPECT_EQ(NearestWord("x", {}), "");
}

TEST_F(KrvsimUsageError, VersionIsPrinted) {
    EXPECT_EQ(Done({"--version"}), "krvsim " KRVCMD_VERSION "\n");
}

}  // namespace
}  // namespace embedded_test
