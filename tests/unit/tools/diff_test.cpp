#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class KrvsimDiff : public ToolFixture {
  protected:
    // The client has made the demonstration farm.
    void SetUp() override { Done({"snapshot", "before"}); }

    // What is different from the beginning, or an empty text.
    static std::string Difference() {
        const ToolResult result = RunKrvsim({"diff", "@before"});
        EXPECT_EQ(result.status, result.out.empty() ? 0 : 1) << result.err;
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    Client m_client;
};

TEST_F(KrvsimDiff, EqualFarmsPrintNothing) {
    EXPECT_EQ(Difference(), "");
    Done({"init", "--server", "other", "--demo"});
    EXPECT_EQ(Done({"diff", ".", "other"}), "") << "IDs of media do not count";
}

TEST_F(KrvsimDiff, ExportAndImportAreMoves) {
    EXPECT_TRUE(m_client.Export({8, 0, 2}).ok);
    EXPECT_EQ(Difference(),
              "Jukebox MyBox (@8)\n"
              "  Magazine 1\n"
              "    - exported  slot 3 -> export station: Sales 2004 (volume 33), Sales 2003 (volume 34)\n"
              "1 change: 1 exported.\n");
    Done({"snapshot", "before", "--force"});
    Done({"load", "--jukebox", "MyBox", "--from-export", "MyBox"});
    EXPECT_EQ(
        Difference(),
        "Jukebox MyBox (@8)\n"
        "  + loaded    export station -> import station: Sales 2004 (volume 33), Sales 2003 (volume 34)\n"
        "1 change: 1 loaded.\n");
}

TEST_F(KrvsimDiff, NewMediumThatIsImportedGetsItsNumber) {
    Done({"load", "--jukebox", "MyBox", "--type", "DVD-RAM", "--label", "Incoming"});
    Done({"snapshot", "before", "--force"});
    EXPECT_TRUE(m_client.Export({8, 0, 2}).ok);
    EXPECT_TRUE(m_client.Import({8, 0, 2}).ok);
    const std::string difference = Difference();
    EXPECT_NE(difference.find("    + imported  import station -> slot 3: Incoming (volume "),
              std::string::npos)
        << difference;
    EXPECT_NE(difference.find("2 changes: 1 imported, 1 exported.\n"), std::string::npos) << difference;
}

TEST_F(KrvsimDiff, FormatShowsLabelAndFileSystem) {
    EXPECT_TRUE(m_client.Format({8, 0, 2}, 0, "Sales 2005").ok);
    EXPECT_EQ(Difference(),
              "Jukebox MyBox (@8)\n"
              "  Magazine 1\n"
              "    ~ formatted slot 3 side A: volume 33; label \"Sales 2004\" -> \"Sales 2005\"\n"
              "1 change: 1 formatted.\n");
}

TEST_F(KrvsimDiff, FormatThatKeepsTheLabelShowsTheFreeBytes) {
    EXPECT_TRUE(m_client.Format({8, 0, 2}, 0).ok);
    const std::string difference = Difference();
    EXPECT_NE(difference.find("    ~ formatted slot 3 side A: volume 33; free bytes "), std::string::npos)
        << difference;
    EXPECT_NE(difference.find("1 change: 1 formatted.\n"), std::string::npos) << difference;
}

TEST_F(KrvsimDiff, ControlCharactersOfLabelsAreHarmless) {
    EXPECT_TRUE(m_client.Format({8, 0, 2}, 0, "a\x1b[31mb\nc").ok);
    EXPECT_NE(Difference().find("-> \"a?[31mb?c\"\n"), std::string::npos);
}

TEST_F(KrvsimDiff, JsonIsOneObject) {
    EXPECT_TRUE(m_client.Export({8, 0, 2}).ok);
    const ToolResult result = RunKrvsim({"diff", "@before", ".", "--json"});
    EXPECT_EQ(result.status, 1);
    const auto plan = nlohmann::json::parse(result.out);
    EXPECT_EQ(plan["equal"], false);
    EXPECT_EQ(plan["counts"], nlohmann::json({{"exported", 1}}));
    const auto& change = plan["jukeboxes"][0]["magazines"][0]["changes"][0];
    EXPECT_EQ(plan["jukeboxes"][0]["jukebox"], 8);
    EXPECT_EQ(plan["jukeboxes"][0]["magazines"][0]["magazine"], 1);
    EXPECT_EQ(change["kind"], "exported");
    EXPECT_EQ(change["from"]["slot"], 3);
    EXPECT_EQ(change["to"]["place"], "export station");
}

TEST_F(KrvsimDiff, CloneShowsWhatTheLibraryShows) {
    ASSERT_EQ(RunKrvsim({"clone", "--library", KRVSIM_EMBEDDED_LIBRARY, "--to", "copy"}).status, 0);
    const ToolResult equal = RunKrvsim({"diff", "copy", "--library", KRVSIM_EMBEDDED_LIBRARY});
    EXPECT_EQ(equal.status, 0) << equal.out << equal.err;
    EXPECT_EQ(equal.out, "");
    EXPECT_TRUE(m_client.Export({8, 0, 2}).ok);
    const ToolResult different = RunKrvsim({"diff", "copy", "--library", KRVSIM_EMBEDDED_LIBRARY});
    EXPECT_EQ(different.status, 1);
    EXPECT_NE(different.out.find("    - removed   slot 3: Sales 2004 (volume 33)"), std::string::npos)
        << different.out << "the library shows no export station";
}

TEST_F(KrvsimDiff, TroubleIsStatus2) {
    EXPECT_EQ(RunKrvsim({"diff", ".", "missing"}).status, 2);
    EXPECT_EQ(RunKrvsim({"diff", "@missing"}).err, "krvsim: server \".\" has no snapshot \"missing\"\n");
    EXPECT_EQ(RunKrvsim({"diff", "."}).status, 2);
}

}  // namespace
}  // namespace embedded_test
