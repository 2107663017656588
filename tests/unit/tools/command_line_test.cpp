#include <gtest/gtest.h>

#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimCommandLine : public ToolFixture {};

TEST_F(KrvsimCommandLine, EveryCommandExplainsItself) {
    const std::vector<std::vector<std::string>> commands = {
        {},          {"init"},    {"dump"},  {"generate"},      {"clone"},        {"load"},
        {"unload"},  {"fault"},   {"check"}, {"fault", "list"}, {"fault", "add"}, {"fault", "clear"},
        {"journal"}, {"servers"},
    };
    for (std::vector<std::string> words : commands) {
        words.emplace_back("--help");
        const ToolResult result = RunKrvsim(words);
        EXPECT_EQ(result.status, 0);
        EXPECT_NE(result.out.find("Usage: krvsim"), std::string::npos) << result.out;
        EXPECT_EQ(result.err, "");
    }
}

TEST_F(KrvsimCommandLine, InvalidCommandLinesEndWithStatusTwo) {
    const std::vector<std::vector<std::string>> lines = {
        {},
        {"bogus"},
        {"init", "--demo", "--empty"},
        {"init", "--layout", "x", "--empty"},
        {"dump", "--format", "xml"},
        {"dump", "--from", "."},
        {"dump", "--server", ".", "--library", "x"},
        {"generate", "--fill", "101"},
        {"generate", "--jukeboxes", "0"},
        {"generate", "--jukeboxes", "2000", "--magazines", "2000", "--slots", "2000"},
        {"clone", "--library", "x"},
        {"load", "--jukebox", "@29"},
        {"load", "--jukebox", "@29", "--type", "CD-R", "--volume", "401"},
        {"load", "--jukebox", "@29", "--volume", "401", "--label", "x"},
        {"fault"},
        {"fault", "add", "--function", "GetSlot"},
        {"fault", "add", "--function", "GetSlot", "--text", "x", "--delay", "1s"},
        {"fault", "add", "--function", "GetSlot", "--delay", "40"},
        {"fault", "add", "--function", "GetSlot", "--delay", "-1s"},
        {"fault", "add", "--function", "GetSlot", "--delay", "25h"},
        {"fault", "add", "--function", "GetSlot", "--delay", "1441m"},
        {"fault", "add", "--function", "GetSlot", "--code", "1", "--side", "C"},
        {"fault", "add", "--function", "GetSlot", "--code", "1", "--probability", "1.5"},
        {"fault", "add", "--function", "GetSlot", "--code", "1", "--text", std::string(1024, 'x')},
        {"journal", "--on", "--off"},
        {"journal", "--summary", "--json"},
        {"journal", "--limit", "5"},
    };
    for (const auto& words : lines)
        EXPECT_NE(WrongUsage(words), "") << (words.empty() ? "nothing" : words[0]);
}

TEST_F(KrvsimCommandLine, UnknownServersEndWithStatusOne) {
    const std::vector<std::vector<std::string>> lines = {
        {"dump", "--server", "nowhere"},   {"load", "--server", "nowhere", "-J", "@1", "--type", "CD-R"},
        {"unload", "--server", "nowhere"}, {"fault", "list", "--server", "nowhere"},
        {"check", "--server", "nowhere"},  {"journal", "--server", "nowhere"},
    };
    for (const auto& words : lines)
        EXPECT_EQ(Failed(words), "krvsim: Server \"nowhere\" is not known.\n") << words[0];
}

// A stream that takes nothing, as a full disk does.
class RefusingBuffer : public std::streambuf {};

TEST_F(KrvsimCommandLine, FailsWhenTheOutputCannotBeWritten) {
    RefusingBuffer buffer;
    std::ostream out(&buffer);
    std::stringstream err;
    EXPECT_EQ(embedded::tools::RunTool({"servers"}, {out, err}), 1);
    EXPECT_EQ(err.str(), "krvsim: cannot write the output\n");
}

}  // namespace
}  // namespace embedded_test
