#include <algorithm>

#include "krvcmd/console/query/column_catalogue.h"
#include "krvcmd/console/query/query_table.h"
#include "krvcmd/service/query/query_command.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using test::Calls;
using test::Outcome;
using test::Words;

// How a query chooses its object and lays out its table.
class QueryOptionsTest : public test::CommandTest {
  protected:
    QueryOptionsTest() {
        Farm()
            .AddJukebox(8, "Tower")
            .WithDrive({"HP", "C1716T", "3404", {0, 4, 1}})
            .WithMagazine(2)
            .WithSlot(0, 1, krvfake::slot_state::kScanFailed);
        Farm().AddJukebox(11, "Desk").WithDrive({"HP", "C1718T", "3405", {0, 5, 1}}).WithMagazine(3);
        Farm().AddVolume(33, "beta").At(8, 0, 0, krvfake::kSideA);
        Farm().AddVolume(34, "alpha").At(11, 0, 2, krvfake::kSideB);
    }

    std::string Output(const Words& words) {
        const Outcome outcome = Work(words);
        EXPECT_EQ(outcome.status, "OK");
        return outcome.output;
    }
};

TEST(QueryObjects, HaveTheirDefaultsInTheOrderInWhichTheyAreChosen) {
    struct Expected {
        QueryObject object;
        std::string_view keyword;
        std::string_view columns;
        std::string_view sort;
    };
    const Expected rows[] = {
        {QueryObject::Jukeboxes, "jukeboxes", "JNoDMSFPCR", "oNJ"},
        {QueryObject::Magazines, "magazines", "NmoC", "NJm"},
        {QueryObject::Slots, "slots", "NmsaIotnfzylv", "NJms"},
        {QueryObject::Drives, "drives", "NdoPCR", "NJd"},
        {QueryObject::Volumes, "volumes", "ILotnfzylv", "NJmsalfv"},
    };
    ASSERT_EQ(QueryObjects().size(), std::size(rows));
    for (size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(QueryObjects()[i].object, rows[i].object);
        EXPECT_EQ(QueryObjects()[i].keyword, rows[i].keyword);
        EXPECT_EQ(QueryObjects()[i].defaultColumns, rows[i].columns);
        EXPECT_EQ(QueryObjects()[i].defaultSort, rows[i].sort);
    }
}

TEST(QueryObjects, HaveDefaultsThatTheTableAccepts) {
    for (const QueryObjectInfo& info : QueryObjects()) {
        Ostrel::UI::Console::CKrvQueryTable table;
        EXPECT_TRUE(table.SetColumnLetters(info.defaultColumns)) << info.keyword;
        EXPECT_TRUE(table.SetSortLetters(info.defaultSort)) << info.keyword;
        EXPECT_NE(&test::Node("query." + std::string(info.keyword)), nullptr);
    }
}

TEST_F(QueryOptionsTest, PrintsATableWithHeaderAndUnderline) {
    EXPECT_EQ(Output({"query", "jukeboxes", "J@8", "columns=JN"}),
              " Jbx ID | Jukebox \n"
              "------------------\n"
              "      8 | Tower   \n"
              "\n");
}

TEST_F(QueryOptionsTest, PrintsRowsOnlyWithoutATable) {
    EXPECT_EQ(Output({"query", "jukeboxes", "columns=JN", "notable"}), "11|Desk\n8|Tower\n");
}

TEST_F(QueryOptionsTest, ChoosesTheFirstObjectInAFixedOrder) {
    const std::pair<Words, std::string> rows[] = {
        {{"query", "volumes", "drives", "slots", "magazines", "jukeboxes"}, "KrvGetNextJukebox previous=0"},
        {{"query", "volumes", "drives", "slots", "magazines"}, "KrvGetMagazine J=11 M=0"},
        {{"query", "volumes", "drives", "slots"}, "KrvGetSlot J=11 M=0 S=2"},
        {{"query", "volumes", "drives"}, "KrvGetDrive J=11 D=0"},
        {{"query", "volumes"}, "KrvGetNextVolume previous=0"},
    };
    // Each object makes a call that those before it in the order of choice do not make.
    for (const auto& [words, call] : rows) {
        const Calls calls = Work(words).calls;
        EXPECT_NE(std::find(calls.begin(), calls.end(), call), calls.end()) << words.size() << " " << call;
        if (words.size() == 6) {
            // The jukeboxes alone: the first step, then two calls for each jukebox.
            EXPECT_EQ(calls.size(), 5U);
        }
    }
}

TEST_F(QueryOptionsTest, RefusesAQueryWithoutAnObject) {
    EXPECT_EQ(StatusAndCalls({"query"}), (Calls{"error 22"}));
    EXPECT_EQ(StatusAndCalls({"query", "columns=JN"}), (Calls{"error 22"}));
    // The jukebox is resolved before the object is looked for.
    EXPECT_EQ(StatusAndCalls({"query", "J@8"}), (Calls{"error 22", "KrvGetJukebox J=8"}));
    EXPECT_EQ(StatusAndCalls({"query", "J", "nobody"}).front(), "error 6");
}

TEST_F(QueryOptionsTest, ReplacesDefaultColumnsAndSortOrderWhole) {
    EXPECT_EQ(Output({"query", "volumes", "col=Il", "sort=l", "notable"}), "34|alpha\n33|beta\n");
    EXPECT_EQ(Output({"query", "volumes", "col=Il", "sort=-l", "notable"}), "33|beta\n34|alpha\n");
    EXPECT_EQ(Output({"query", "volumes", "col=II", "sort=I", "notable"}), "33|33\n34|34\n");
    // An empty sort order keeps that of the enumeration.
    EXPECT_EQ(Output({"query", "jukeboxes", "col=J", "sort=", "notable"}), "8\n11\n");
}

TEST_F(QueryOptionsTest, SortsByLabelThenMagazineThenSlot) {
    Farm().AddJukebox(29, "Rack").WithMagazine(3).WithMagazine(3);
    Farm().AddVolume(41, "disc").At(29, 1, 0, krvfake::kSideA);
    Farm().AddVolume(42, "disc").At(29, 0, 2, krvfake::kSideA);
    Farm().AddVolume(43, "disc").At(29, 0, 1, krvfake::kSideA);
    Farm().AddVolume(44, "card").At(29, 1, 2, krvfake::kSideB);
    EXPECT_EQ(Output({"query", "volumes", "J@29", "col=ILl", "sort=lms", "notable", "sep=,"}),
              "44,Rack\\2\\3.B,card\n"
              "43,Rack\\1\\2.A,disc\n"
              "42,Rack\\1\\3.A,disc\n"
              "41,Rack\\2\\1.A,disc\n");
    EXPECT_EQ(Output({"query", "volumes", "J@29", "col=ILl", "sort=-lms", "notable", "sep=,"}),
              "41,Rack\\2\\1.A,disc\n"
              "42,Rack\\1\\3.A,disc\n"
              "43,Rack\\1\\2.A,disc\n"
              "44,Rack\\2\\3.B,card\n");
}

TEST_F(QueryOptionsTest, PrintsNothingWithoutColumns) {
    EXPECT_EQ(Output({"query", "volumes", "col="}), "");
    EXPECT_EQ(Output({"query", "volumes", "col=", "notable"}), "");
}

TEST_F(QueryOptionsTest, RefusesUnknownLettersBeforeItLooksAnythingUp) {
    for (const char* letters : {"columns=IQ", "sort=Q", "columns=I-", "sort=I Q"}) {
        const Outcome outcome = Work({"query", "volumes", letters});
        EXPECT_EQ(outcome.status, "error 22") << letters;
        EXPECT_EQ(outcome.calls, Calls{}) << letters;
        EXPECT_EQ(outcome.output, "") << letters;
    }
    EXPECT_EQ(StatusAndCalls({"query", "jukeboxes", "J@8", "columns=Q"}),
              (Calls{"error 22", "KrvGetJukebox J=8"}));
}

TEST_F(QueryOptionsTest, TakesTheLastOfAnOptionGivenTwice) {
    EXPECT_EQ(
        Output({"query", "jukeboxes", "col=Q", "col=J", "sort=Q", "sort=J", "sep=Q", "sep=;", "notable"}),
        "8\n11\n");
}

TEST_F(QueryOptionsTest, PutsTheSeparatorBetweenTheCells) {
    EXPECT_EQ(Output({"query", "jukeboxes", "col=JN", "sep=,", "notable"}), "11,Desk\n8,Tower\n");
    EXPECT_EQ(Output({"query", "jukeboxes", "col=JN", "sep=", "notable"}), "11Desk\n8Tower\n");
    EXPECT_EQ(Output({"query", "jukeboxes", "col=JN", "separator", "==", "notable"}), "11=Desk\n8=Tower\n");
    EXPECT_EQ(Output({"query", "jukeboxes", "J@8", "col=JN", "sep=; "}),
              " Jbx ID ;  Jukebox \n"
              "-------------------\n"
              "      8 ;  Tower   \n"
              "\n");
}

TEST_F(QueryOptionsTest, FitsTheTableIntoTheWidth) {
    // " Jbx ID " takes 8 characters; the column of the name does not fit any more.
    EXPECT_EQ(Output({"query", "jukeboxes", "J@8", "col=JN", "width=10"}),
              " Jbx ID   \n"
              "--------\n"
              "      8   \n"
              "\n");
}

TEST_F(QueryOptionsTest, TakesAWidthOfZeroAsNoLimit) {
    EXPECT_EQ(Output({"query", "jukeboxes", "J@8", "col=JN", "width=0"}),
              Output({"query", "jukeboxes", "J@8", "col=JN"}));
}

TEST_F(QueryOptionsTest, IgnoresTheWidthOfRowsWithoutATable) {
    EXPECT_EQ(Output({"query", "jukeboxes", "J@8", "col=JN", "width=3", "notable"}), "8|Tower\n");
}

TEST_F(QueryOptionsTest, IsQuietWithoutATable) {
    const Outcome outcome = Run({"query", "jukeboxes", "J@8", "col=J", "notable"});
    EXPECT_EQ(outcome.output, "8\n");
    EXPECT_TRUE(GetBannerFlags().quiet);
    EXPECT_FALSE(GetBannerFlags().bannerShown);
}

TEST_F(QueryOptionsTest, PrintsTheBannerAboveTheTable) {
    const Outcome outcome = Run({"query", "jukeboxes", "J@8", "col=JN"});
    EXPECT_TRUE(outcome.output.starts_with("Carvoline - command line interface\n"));
    EXPECT_TRUE(
        outcome.output.ends_with("\n\n Jbx ID | Jukebox \n------------------\n      8 | Tower   \n\n"));
    EXPECT_FALSE(GetBannerFlags().quiet);
}

TEST_F(QueryOptionsTest, AcceptsTheDashFormsOfItsKeywords) {
    EXPECT_EQ(Output({"query", "-jukeboxes", "col=J", "/notable", "-separator", ","}), "11\n8\n");
}

// No line can give these: the grammar does not offer them to the command. They are read all the same.
class QueryHiddenOptionsTest : public QueryOptionsTest {
  protected:
    std::string Executed(const std::vector<Parameter>& parameters) {
        CQuery query;
        const std::vector<Parameter> options;
        Status status = query.Initialize(options, parameters, Writer());
        if (!status.IsOk()) return "not initialized: " + test::Text(status);
        status = query.Run();
        return test::Text(status);
    }

    const KeywordNode m_configuration = test::MakeNode("configuration");
    const KeywordNode m_detectSequence = test::MakeNode("detectsequence");
};

TEST_F(QueryHiddenOptionsTest, NeedNoObject) {
    EXPECT_EQ(Executed({}), "error 22");
    EXPECT_EQ(Executed({{&m_configuration, ValueKind::None, {}, {}}}), "OK");
    EXPECT_EQ(Executed({{&m_detectSequence, ValueKind::None, {}, {}}}), "OK");
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(QueryHiddenOptionsTest, ForbidAnAddress) {
    const Parameter jukebox{&test::Node("query.J"), ValueKind::Numbers, {}, {{8, 8, false}}};
    EXPECT_EQ(Executed({jukebox, {&m_configuration, ValueKind::None, {}, {}}}), "not initialized: error 22");
    EXPECT_EQ(Executed({jukebox, {&m_detectSequence, ValueKind::None, {}, {}}}), "not initialized: error 22");
}

TEST_F(QueryHiddenOptionsTest, LeaveTheBannerAloneWhenTheyForbidTheLine) {
    const Parameter jukebox{&test::Node("query.J"), ValueKind::Numbers, {}, {{8, 8, false}}};
    const Parameter notable{&test::Node("query.notable"), ValueKind::None, {}, {}};
    EXPECT_EQ(Executed({jukebox, notable, {&m_configuration, ValueKind::None, {}, {}}}),
              "not initialized: error 22");
    EXPECT_FALSE(GetBannerFlags().quiet);
}

}  // namespace
}  // namespace krvcmd
