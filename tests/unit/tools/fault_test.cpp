#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "embedded/simulated/faults.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimFault : public ToolFixture {
  protected:
    static std::string Add(std::vector<std::string> words) {
        words.insert(words.begin(), {"fault", "add"});
        return Done(words);
    }

    // Which of the calls fail, as a row of marks.
    static std::string Hits(Client& client, int calls) {
        std::string marks;
        for (int call = 0; call < calls; ++call) {
            JukeboxRecord record{};
            marks += client.Jukebox(8, record).ok ? '.' : 'X';
        }
        return marks;
    }
};

TEST_F(KrvsimFault, CallFailsWithCodeAndTextAndChangesNothing) {
    EXPECT_EQ(Add({"-f", "KrvMediaExport", "--code", "7", "--text", "Stopped by hand."}), "Added fault 1.\n");
    Client client;
    EXPECT_EQ(Describe(client.Export({8, 0, 2})), "7: Stopped by hand.");
    EXPECT_EQ(client.SlotState({8, 0, 2}), 4U);
    EXPECT_TRUE(client.Scan({8, 0, 2}).ok) << "other functions are not meant";
}

TEST_F(KrvsimFault, WarnsOfCodeZeroWhichKrvcmdsExitStatusDoesNotTell) {
    const ToolResult result = RunKrvsim({"fault", "add", "-f", "KrvMediaExport", "--code", "0"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Added fault 1.\n");
    EXPECT_EQ(result.err,
              "krvsim: warning: krvcmd reports an error with code 0 but ends with exit status 0\n");
    Client client;
    EXPECT_EQ(Describe(client.Export({8, 0, 2})), "0: A fault made the call fail.");
}

TEST_F(KrvsimFault, AffectsOpenSessionsUntilItIsCleared) {
    Client client;
    EXPECT_EQ(Hits(client, 1), ".");
    Add({"-f", "getjukebox", "--code", "9"});
    EXPECT_EQ(Hits(client, 2), "XX");
    EXPECT_EQ(Done({"fault", "clear"}), "Cleared 1 fault.\n");
    EXPECT_EQ(Hits(client, 2), "..");
}

struct WhenCase {
    std::vector<std::string> when;
    const char* hits;
};

TEST_F(KrvsimFault, NthAndTimesChooseTheCalls) {
    const std::vector<WhenCase> cases = {
        {{}, "XXXXXX"},
        {{"--nth", "3"}, "..XXXX"},
        {{"--times", "2"}, "XX...."},
        {{"--nth", "2", "--times", "3"}, ".XXX.."},
        {{"--nth", "6", "--times", "1"}, ".....X"},
        {{"--probability", "0"}, "......"},
    };
    for (const WhenCase& expected : cases) {
        Done({"fault", "clear"});
        std::vector<std::string> words = {"-f", "GetJukebox", "--code", "9"};
        words.insert(words.end(), expected.when.begin(), expected.when.end());
        Add(words);
        Client client;
        EXPECT_EQ(Hits(client, 6), expected.hits);
    }
}

TEST_F(KrvsimFault, CountsCallsAcrossSessions) {
    Add({"-f", "GetJukebox", "--nth", "3", "--times", "1", "--code", "9"});
    std::string marks;
    for (int session = 0; session < 4; ++session) {
        Client client;
        marks += Hits(client, 1);
    }
    EXPECT_EQ(marks, "..X.");
}

struct ItemCase {
    std::vector<std::string> item;
    const char* hits;  // the exports below, in order
};

TEST_F(KrvsimFault, ItemChoosesTheCalls) {
    const std::vector<Slot> exports = {{8, 0, 0}, {8, 0, 2}, {29, 1, 0}, {29, 0, 2}};
    const std::vector<ItemCase> cases = {
        {{"-J", "@8"}, "XX.."},
        {{"-J", "Sales Tower"}, "..XX"},
        {{"-J", "@29", "-M", "2"}, "..X."},
        {{"-S", "3"}, ".X.X"},
        {{"-M", "1", "-S", "1"}, "X..."},
        {{"-V", "34"}, ".X.."},  // the medium that the volume is on
        {{"-V", "401"}, "...."},
    };
    for (const ItemCase& expected : cases) {
        Done({"init", "--force"});
        std::vector<std::string> words = {"-f", "MediaExport", "--code", "9"};
        words.insert(words.end(), expected.item.begin(), expected.item.end());
        Add(words);
        Client client;
        std::string marks;
        for (const Slot& slot : exports)
            marks += client.Export(slot).ok ? '.' : 'X';
        EXPECT_EQ(marks, expected.hits) << expected.item[0] << expected.item[1];
    }
}

TEST_F(KrvsimFault, SideDriveAndVolumeChooseTheCalls) {
    Add({"-f", "GetSide", "--side", "B", "--code", "9"});
    Add({"-f", "GetDrive", "-D", "2", "--code", "9"});
    Add({"-f", "VolumeDetail", "-V", "33", "--code", "9"});
    Client client;
    SideRecord side{};
    EXPECT_TRUE(client.Side({8, 0, 0}, 0, side).ok);
    EXPECT_FALSE(client.Side({8, 0, 0}, 1, side).ok);
    DriveRecord drive{};
    EXPECT_TRUE(client.Drive(8, 0, drive).ok);
    EXPECT_FALSE(client.Drive(8, 1, drive).ok);
    VolumeRecord volume{};
    EXPECT_TRUE(client.Volume(34, volume).ok);
    EXPECT_FALSE(client.Volume(33, volume).ok);
}

TEST_F(KrvsimFault, AnyFunctionIncludesSessionsAndTheService) {
    Add({"-f", "any", "--code", "9", "--text", "Nothing works."});
    const Client client;
    EXPECT_EQ(Describe(client.GetOpening()), "9: Nothing works.");
    EXPECT_EQ(Describe(StartService(".")), "9: Nothing works.");
}

TEST_F(KrvsimFault, DelayOnlyDelays) {
    Add({"-f", "GetJukebox", "--delay", "120ms", "--times", "1"});
    Client client;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Hits(client, 2), "..");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(120));
}

TEST_F(KrvsimFault, ListShowsFaultsAndTheirHits) {
    EXPECT_EQ(Done({"fault", "list"}), "There are no faults.\n");
    Add({"-f", "GetJukebox", "-J", "MyBox", "--nth", "2", "--times", "3", "--code", "9", "--text", "No."});
    Add({"-f", "any", "--delay", "2m", "--probability", "0.125", "-V", "4", "-S", "2"});
    Client client;
    EXPECT_EQ(Hits(client, 3), ".XX");
    EXPECT_EQ(
        Done({"fault", "list"}),
        "Fault  Function       Item              When                      Effect            Calls  Hits\n"
        "1      KrvGetJukebox  jukebox 8         3 calls from call 2 on    fail with 9: No.  3      2\n"
        "2      any            slot 2, volume 4  every call, 12.5% chance  wait 120000 ms    0      0\n");
}

TEST_F(KrvsimFault, ClearRemovesTheGivenFaultsOrAll) {
    for (int fault = 0; fault < 3; ++fault)
        Add({"-f", "GetSlot", "--code", "9"});
    EXPECT_EQ(Failed({"fault", "clear", "1", "7"}), "krvsim: there is no fault 7\n");
    EXPECT_EQ(Done({"fault", "clear", "1", "3"}), "Cleared 2 faults.\n");
    EXPECT_EQ(Done({"fault", "clear"}), "Cleared 1 fault.\n");
    EXPECT_EQ(Done({"fault", "clear"}), "Cleared 0 faults.\n");
    Done({"check"});
}

TEST_F(KrvsimFault, RefusesCodesAndProbabilitiesOutOfRange) {
    for (const char* probability : {"nan", "-nan", "-0.1", "1.1", "inf", "x"}) {
        EXPECT_TRUE(WrongUsage({"fault", "add", "-f", "GetSlot", "--code", "9", "--probability", probability})
                        .starts_with("krvsim: --probability: "))
            << probability;
    }
    for (const char* code : {"-1", "-2147483648", "2147483648"}) {
        EXPECT_TRUE(
            WrongUsage({"fault", "add", "-f", "GetSlot", "--code", code}).starts_with("krvsim: --code: "))
            << code;
    }
    EXPECT_EQ(Done({"fault", "list"}), "There are no faults.\n");
}

TEST_F(KrvsimFault, UnknownFunctionFailsWithAListOfFunctions) {
    const std::string error = Failed({"fault", "add", "-f", "Explode", "--code", "9"});
    EXPECT_TRUE(error.starts_with("krvsim: unknown function \"Explode\"; the functions are:\n")) << error;
    EXPECT_NE(error.find("KrvServiceRestart"), std::string::npos);
}

TEST(FaultChance, IsTheSameForTheSameSeed) {
    bool differs = false;
    for (int64_t call = 1; call <= 64; ++call) {
        EXPECT_EQ(embedded::StrikesByChance(0.5, 7, call), embedded::StrikesByChance(0.5, 7, call));
        differs =
            differs || embedded::StrikesByChance(0.5, 7, call) != embedded::StrikesByChance(0.5, 8, call);
    }
    EXPECT_TRUE(differs);
}

TEST(FaultChance, HitsAboutAsOftenAsItsProbability) {
    constexpr int64_t kCalls = 20'000;
    for (const double probability : {0.0, 0.05, 0.5, 0.9, 1.0}) {
        int64_t struck = 0;
        for (int64_t call = 1; call <= kCalls; ++call)
            struck += embedded::StrikesByChance(probability, 3, call) ? 1 : 0;
        EXPECT_NEAR(static_cast<double>(struck) / kCalls, probability, 0.02);
    }
}

}  // namespace
}  // namespace embedded_test
