#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimJournal : public ToolFixture {
  protected:
    static std::vector<nlohmann::json> Entries(const std::vector<std::string>& more = {}) {
        std::vector<std::string> words = {"journal", "--json"};
        words.insert(words.end(), more.begin(), more.end());
        std::stringstream lines(Done(words));
        std::vector<nlohmann::json> entries;
        for (std::string line; std::getline(lines, line);)
            entries.push_back(nlohmann::json::parse(line));
        return entries;
    }

    static std::vector<std::string> Functions() {
        std::vector<std::string> functions;
        for (const nlohmann::json& entry : Entries())
            functions.push_back(entry["function"]);
        return functions;
    }
};

TEST_F(KrvsimJournal, IsOffUntilItIsSwitchedOn) {
    { Client client; }
    const ToolResult silent = RunKrvsim({"journal"});
    EXPECT_EQ(silent.status, 0);
    EXPECT_EQ(silent.out, "");
    EXPECT_EQ(silent.err, "The journal of server \".\" is empty and switched off (--on switches it on).\n");
    EXPECT_EQ(Done({"journal", "--on"}),
              "The journal of server \".\" is switched on and keeps 100000 calls.\n");
    { Client client; }
    EXPECT_EQ(Functions(), (std::vector<std::string>{"KrvSessionCreate", "KrvSessionClose"}));
    EXPECT_EQ(Done({"journal", "--off"}), "The journal of server \".\" is switched off.\n");
    { Client client; }
    EXPECT_EQ(Entries().size(), 2U) << "what it holds stays, and nothing is added";
}

TEST_F(KrvsimJournal, EntryTellsWhoDidWhatToWhichItemAndHowItEnded) {
    Done({"journal", "--on"});
    Client client;
    ASSERT_TRUE(client.Export({29, 1, 0}).ok);
    ASSERT_FALSE(client.Export({29, 1, 0}).ok);
    ASSERT_TRUE(client.SetDirectory(33, "new\\name").ok);
    const std::vector<nlohmann::json> entries = Entries();
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[0]["argument"], ".");
    const nlohmann::json& exported = entries[1];
    EXPECT_EQ(exported["function"], "KrvMediaExport");
    EXPECT_EQ(exported["jukebox"], 29);
    EXPECT_EQ(exported["magazine"], 2);
    EXPECT_EQ(exported["slot"], 1);
    EXPECT_TRUE(exported["volume"].is_null());
    EXPECT_EQ(exported["session"], client.GetSession());
    EXPECT_EQ(exported["succeeded"], true);
    EXPECT_EQ(exported["change"], "exported: Sales Tower\\2\\1 (Invoices 01)");
    EXPECT_GE(exported["duration_us"], 0);
    const nlohmann::json& refused = entries[2];
    EXPECT_EQ(refused["succeeded"], false);
    EXPECT_EQ(refused["code"], 501);
    EXPECT_EQ(refused["text"], "There is no medium in slot 1 of magazine 2 in jukebox \"Sales Tower\".");
    EXPECT_EQ(refused["change"], "");
    EXPECT_EQ(entries[3]["volume"], 33);
    EXPECT_EQ(entries[3]["argument"], "new\\name");
}

TEST_F(KrvsimJournal, LooksAndCallsThatAreNotValidAreInItToo) {
    Done({"journal", "--on"});
    Client client;
    (void)client.SlotState({8, 0, 0});
    Context context(client.GetSession());
    ASSERT_EQ(KrvMediaImport(context.Get(), nullptr), 0);
    const std::vector<nlohmann::json> entries = Entries();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[1]["function"], "KrvGetSlot");
    EXPECT_EQ(entries[2]["code"], 1000);
    EXPECT_TRUE(entries[2]["jukebox"].is_null());
}

TEST_F(KrvsimJournal, KeepsNoMoreThanItsLimit) {
    Done({"journal", "--on", "--limit", "5"});
    Client client;
    for (int call = 0; call < 20; ++call)
        (void)client.SlotState({8, 0, 0});
    const std::vector<nlohmann::json> entries = Entries();
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_EQ(entries.front()["id"], 17);
    EXPECT_EQ(entries.back()["id"], 21);
    EXPECT_TRUE(
        Done({"journal", "--summary"}).starts_with("The first 16 calls are no longer in the journal.\n"));
}

// A long run of looks is written in groups; a change and the end of the session write what is left.
TEST_F(KrvsimJournal, HoldsEveryCallOfALongSessionInOrder) {
    constexpr int kLooks = 5000;
    Done({"journal", "--on"});
    {
        Client client;
        for (int look = 0; look < kLooks; ++look)
            (void)client.SlotState({8, 0, look % 12});
        const auto written = static_cast<int>(Entries().size());
        EXPECT_LE(written, kLooks + 1);
        EXPECT_GE(written, kLooks - kLooks / 16) << "no more than a sixteenth is kept back";
        ASSERT_TRUE(client.RenameJukebox(8, "x").ok);
        EXPECT_EQ(Entries().size(), kLooks + 2U) << "a change writes the looks before it";
        (void)client.SlotState({8, 0, 0});
    }
    const std::vector<nlohmann::json> entries = Entries();
    ASSERT_EQ(entries.size(), kLooks + 4U);
    for (int look = 0; look < kLooks; ++look)
        ASSERT_EQ(entries[static_cast<size_t>(look) + 1]["slot"], look % 12 + 1) << look;
    EXPECT_EQ(entries[kLooks + 1]["function"], "KrvJukeboxSetName");
    EXPECT_EQ(entries[kLooks + 3]["function"], "KrvSessionClose");
}

TEST_F(KrvsimJournal, CallsThatItCouldNotRecordAreReportedUntilItIsSwitchedOnAgain) {
    Done({"journal", "--on"});
    EXPECT_EQ(Done({"check"}).find("could not be recorded"), std::string::npos);
    std::ofstream(m_home.LocalFarm().string() + "-unrecorded").flush();
    EXPECT_NE(Done({"check"}).find("\nSome calls could not be recorded in the journal, the last at "),
              std::string::npos);
    Done({"journal", "--on"});
    EXPECT_EQ(Done({"check"}).find("could not be recorded"), std::string::npos);
}

TEST_F(KrvsimJournal, SinceLeavesOutWhatWasSeen) {
    Done({"journal", "--on"});
    Client client;
    for (int call = 0; call < 4; ++call)
        (void)client.SlotState({8, 0, 0});
    EXPECT_EQ(Entries({"--since", "3"}).size(), 2U);
    EXPECT_EQ(Entries({"--since", "5"}).size(), 0U);
}

TEST_F(KrvsimJournal, SummaryTellsInWordsWhatChanged) {
    Client client;
    ASSERT_TRUE(client.Export({8, 0, 0}).ok);  // before it is switched on
    Done({"journal", "--on"});
    ASSERT_TRUE(client.Export({8, 0, 2}).ok);
    ASSERT_TRUE(client.Export({14, 0, 0}).ok);
    ASSERT_TRUE(client.Import({29, 1, 2}).ok);
    ASSERT_TRUE(client.Scan({8, 0, 6}).ok);
    ASSERT_TRUE(client.Scan({8, 0, 6}).ok);  // changes nothing
    ASSERT_TRUE(client.Format({31, 1, 2}, 0, "New").ok);
    ASSERT_TRUE(client.Erase({31, 1, 2}, 1).ok);
    ASSERT_TRUE(client.Finalize({29, 1, 0}).ok);
    ASSERT_TRUE(client.DisableJukebox(31).ok);
    ASSERT_TRUE(client.DisableMagazine(11, 0).ok);
    ASSERT_TRUE(client.DisableDrive(29, 1).ok);
    ASSERT_TRUE(client.DisableVolume(201).ok);
    ASSERT_TRUE(client.RenameJukebox(31, "Lab").ok);
    ASSERT_TRUE(client.SetDirectory(10, "x").ok);
    ASSERT_FALSE(client.Export({8, 0, 2}).ok);
    EXPECT_EQ(Done({"journal", "--summary"}),
              "exported: MyBox\\3 (Sales 2004, Sales 2003)\n"
              "exported: My Box\\1 (Audio 1)\n"
              "imported: Sales Tower\\2\\3 (Sales 2006)\n"
              "scanned: MyBox\\7 (Not read yet)\n"
              "formatted: Research\\2\\3.A (volume 275, UDF 2.01, label \"New\")\n"
              "erased: Research\\2\\3.B (Samples B)\n"
              "finalized: Sales Tower\\2\\1 (Invoices 01)\n"
              "disabled: Research\n"
              "disabled: magazine 1 of jukebox \"Archive Tower\"\n"
              "disabled: drive 2 of jukebox \"Sales Tower\"\n"
              "disabled: volume 201 (Invoices 01)\n"
              "renamed: jukebox \"Research\" to \"Lab\"\n"
              "directory name: volume 10 (Disc-10) is now \"x\"\n"
              "13 changes: 1 directory name, 4 disabled, 1 erased, 2 exported, 1 finalized, 1 formatted, 1 "
              "imported, "
              "1 renamed, 1 scanned; 15 calls, 1 failed.\n"
              "about 74 s in jukebox MyBox, of which 26 s moving\n"
              "about 5 s in jukebox My Box, of which 5 s moving\n"
              "about 4 min in jukebox Sales Tower, of which 27 s moving\n"
              "about 16 min in jukebox Lab, of which 27 s moving\n"
              "about 22 min in all\n");
}

// The default profile of each jukebox is the small one, with 5 s for a move; 10 s for each of the two here.
TEST_F(KrvsimJournal, SummaryEstimatesTimesByTheProfile) {
    const std::string profile = WriteFile("slow.toml", "format = 1\nmove = 600\n");
    Done({"journal", "--on"});
    Client client;
    ASSERT_TRUE(client.Export({8, 0, 0}).ok);
    ASSERT_TRUE(client.Export({8, 0, 1}).ok);
    const auto lastLine = [](const std::vector<std::string>& more) {
        std::vector<std::string> words = {"journal", "--summary"};
        words.insert(words.end(), more.begin(), more.end());
        const std::string text = Done(words);
        return text.substr(text.rfind('\n', text.size() - 2) + 1);
    };
    EXPECT_EQ(lastLine({}), "about 10 s in jukebox MyBox, of which 10 s moving\n");
    EXPECT_EQ(lastLine({"--profile", "small"}), lastLine({}));
    EXPECT_EQ(lastLine({"--profile", "large"}), "about 14 s in jukebox MyBox, of which 14 s moving\n");
    EXPECT_EQ(lastLine({"--profile", profile}), "about 20 min in jukebox MyBox, of which 20 min moving\n");
}

TEST_F(KrvsimJournal, ProfileWithAMistakeIsRefused) {
    const std::string profile = WriteFile("slow.toml", "format = 1\nmove = -1\n");
    EXPECT_EQ(Failed({"journal", "--summary", "--profile", profile}),
              "krvsim: " + profile + ":2: move: must be a number of seconds from 0 to 10000000\n");
    EXPECT_EQ(Failed({"journal", "--summary", "--profile", "fast"}),
              "krvsim: fast: cannot be read; a profile is small, large or a file\n");
    (void)WrongUsage({"journal", "--profile", "small"});
}

TEST_F(KrvsimJournal, DeadlineThatCannotBeKeptIsAWarning) {
    const std::string profile = WriteFile("slow.toml", "format = 1\nmove = 3600\n");
    Done({"journal", "--on"});
    Client client;
    ASSERT_TRUE(client.Export({8, 0, 0}).ok);
    const auto warning = [&](const char* deadline) {
        const ToolResult result = RunKrvsim(
            {"journal", "--summary", "--profile", profile, "--start", "22:30", "--deadline", deadline});
        EXPECT_EQ(result.status, 0);
        return result.err;
    };
    EXPECT_EQ(warning("23:30"), "");
    EXPECT_EQ(warning("23:00"), "Started at 22:30, it ends about 30 min after the deadline 23:00.\n");
    (void)WrongUsage({"journal", "--summary", "--deadline", "6:00"});
    (void)WrongUsage({"journal", "--summary", "--start", "06:00"});
}

TEST_F(KrvsimJournal, SwitchingItOnAgainBeginsANewSummary) {
    Client client;
    Done({"journal", "--on"});
    ASSERT_TRUE(client.Export({8, 0, 0}).ok);
    Done({"journal", "--on", "--limit", "50"});
    EXPECT_NE(Done({"journal", "--summary"}).find("1 change: 1 exported"), std::string::npos)
        << "it was on all the time";
    Done({"journal", "--off"});
    Done({"journal", "--on"});
    EXPECT_EQ(Done({"journal", "--summary"}), "0 changes; 0 calls, 0 failed.\n");
}

TEST_F(KrvsimJournal, ServiceCallsAndCallsOnAStoppedServiceAreInIt) {
    Done({"journal", "--on"});
    Client client;
    ASSERT_TRUE(client.StopService().ok);
    JukeboxRecord record{};
    ASSERT_FALSE(client.Jukebox(8, record).ok);
    ASSERT_TRUE(StartService(".").ok);
    EXPECT_EQ(Functions(), (std::vector<std::string>{"KrvSessionCreate", "KrvServiceStop", "KrvGetJukebox",
                                                     "KrvServiceStart"}));
    EXPECT_NE(Done({"journal", "--summary"}).find("service stopped\nservice started\n"), std::string::npos);
}

TEST_F(KrvsimJournal, LinesAreForReading) {
    Done({"journal", "--on"});
    Client client;
    ASSERT_TRUE(client.RenameJukebox(8, "line\nbreak").ok);
    const std::string lines = Done({"journal"});
    EXPECT_NE(lines.find("KrvJukeboxSetName  jukebox 8  \"line?break\"  ok  "), std::string::npos) << lines;
    EXPECT_EQ(std::ranges::count(lines, '\n'), 2);
}

// Makes a call when the first entries are shown, and presses Ctrl-C when the next ones are.
class InterruptingBuffer : public std::stringbuf {
  public:
    explicit InterruptingBuffer(int signal) : m_signal(signal) {}

  private:
    int sync() override {
        ++m_flushes;
        if (m_flushes == 1) Client().Jukeboxes();
        // Once: at the end of the program, the signal would end the process.
        if (m_flushes == 2) (void)std::raise(m_signal);
        return 0;
    }

    int m_signal;
    int m_flushes = 0;
};

TEST_F(KrvsimJournal, FollowShowsNewCallsUntilItIsInterrupted) {
    for (const int signal : {SIGINT, SIGTERM}) {
        Done({"init", "--force"});
        Done({"journal", "--on"});
        { Client client; }
        InterruptingBuffer buffer(signal);
        std::ostream out(&buffer);
        std::stringstream err;
        EXPECT_EQ(embedded::tools::RunTool({"journal", "--follow"}, {out, err}), 0);
        EXPECT_NE(buffer.str().find("KrvSessionClose"), std::string::npos) << buffer.str();
        EXPECT_NE(buffer.str().find("KrvGetNextJukebox"), std::string::npos) << buffer.str();
        EXPECT_EQ(err.str(), "");
    }
}

}  // namespace
}  // namespace embedded_test
