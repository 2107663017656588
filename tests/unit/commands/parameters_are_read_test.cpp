// Every parameter that the grammar offers changes what its command does.

#include <algorithm>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::kSideA;
using krvfake::kSideB;
using test::Outcome;
using test::Words;

// With `words` at its end, `line` does something else.
struct ParameterRow {
    std::string_view command;
    std::string_view parameter;
    Words line;
    Words words;
};

const std::vector<ParameterRow>& Rows() {
    static const std::vector<ParameterRow> rows = {
        {"help", "<command>", {"help"}, {"scan"}},
        {"service", "start", {"service"}, {"start"}},
        {"service", "stop", {"service"}, {"stop"}},
        {"service", "restart", {"service"}, {"restart"}},
        {"import", "J", {"import"}, {"J@8"}},
        {"import", "M", {"import", "J@8"}, {"M2"}},
        {"import", "S", {"import", "J@8", "M2"}, {"S1"}},
        {"import", "repeat", {"import", "J@8"}, {"repeat=2"}},
        {"export", "J", {"export"}, {"J@8"}},
        {"export", "M", {"export", "J@8"}, {"M2"}},
        {"export", "S", {"export", "J@8", "M2"}, {"S1"}},
        {"export", "V", {"export"}, {"V@33"}},
        {"export", "repeat", {"export", "J@8"}, {"repeat=2"}},
        {"scan", "J", {"scan"}, {"J@8"}},
        {"scan", "M", {"scan", "J@8"}, {"M2"}},
        {"scan", "S", {"scan", "J@8", "M2"}, {"S1"}},
        {"scan", "V", {"scan"}, {"V@33"}},
        {"format", "J", {"format"}, {"J@8"}},
        {"format", "M", {"format", "J@8"}, {"M2"}},
        {"format", "S", {"format", "J@8", "M2"}, {"S1"}},
        {"format", ".A", {"format", "J@8", "S1"}, {".A"}},
        {"format", ".B", {"format", "J@8", "S1"}, {".B"}},
        {"format", "V", {"format"}, {"V@33"}},
        {"format", "label", {"format", "J@8", "S1"}, {"label=x"}},
        {"format", "erase", {"format", "J@8", "S1"}, {"erase"}},
        {"format", "certify", {"format", "J@8", "S1"}, {"certify"}},
        {"format", "sequential", {"format", "J@8", "S1"}, {"sequential"}},
        {"format", "finalize", {"format", "J@8", "S1"}, {"finalize"}},
        {"enable", "J", {"enable"}, {"J@8"}},
        {"enable", "M", {"enable", "J@8"}, {"M2"}},
        {"enable", "D", {"enable", "J@8"}, {"D1"}},
        {"enable", "S", {"enable", "J@8"}, {"S1"}},
        {"enable", "V", {"enable"}, {"V@33"}},
        {"disable", "J", {"disable"}, {"J@8"}},
        {"disable", "M", {"disable", "J@8"}, {"M2"}},
        {"disable", "D", {"disable", "J@8"}, {"D1"}},
        {"disable", "S", {"disable", "J@8"}, {"S1"}},
        {"disable", "V", {"disable"}, {"V@33"}},
        {"name", "J", {"name", "x"}, {"J@8"}},
        {"name", "V", {"name", "x"}, {"V@33"}},
        {"name", "<new name>", {"name", "J@8"}, {"x"}},
        {"query", "J", {"query", "jukeboxes"}, {"J@8"}},
        {"query", "M", {"query", "slots", "J@8"}, {"M2"}},
        {"query", "S", {"query", "slots", "J@8", "M1"}, {"S2"}},
        {"query", ".A", {"query", "slots", "J@8", "M1", "S1"}, {".A"}},
        {"query", ".B", {"query", "slots", "J@8", "M1", "S1"}, {".B"}},
        {"query", "D", {"query", "drives", "J@8"}, {"D1"}},
        {"query", "V", {"query", "volumes"}, {"V@33"}},
        {"query", "columns", {"query", "volumes"}, {"columns=I"}},
        {"query", "sort", {"query", "volumes"}, {"sort=-I"}},
        {"query", "width", {"query", "volumes"}, {"width=20"}},
        {"query", "notable", {"query", "volumes"}, {"notable"}},
        {"query", "separator", {"query", "volumes"}, {"separator=;"}},
        {"query", "jukeboxes", {"query"}, {"jukeboxes"}},
        {"query", "magazines", {"query"}, {"magazines"}},
        {"query", "drives", {"query"}, {"drives"}},
        {"query", "slots", {"query"}, {"slots"}},
        {"query", "volumes", {"query"}, {"volumes"}},
    };
    return rows;
}

class ParametersAreReadTest : public test::CommandTest {
  protected:
    ParametersAreReadTest() {
        Farm().AddJukebox(8, "Tower").WithDrive({}).WithDrive({}).WithMagazine(3).WithMagazine(2);
        Farm().AddVolume(33, "a").At(8, 0, 0, kSideA);
        Farm().AddVolume(34, "b").At(8, 0, 0, kSideB);
        Farm().AddVolume(35, "c").At(8, 0, 1, kSideA);
    }

    std::string Everything(const Words& words) {
        GetBannerFlags() = {};
        const Outcome outcome = Run(words);
        return outcome.status + "\n" + outcome.output + testing::PrintToString(outcome.calls);
    }
};

TEST_F(ParametersAreReadTest, ChangeWhatTheirCommandDoes) {
    for (const ParameterRow& row : Rows()) {
        Words longer = row.line;
        longer.insert(longer.end(), row.words.begin(), row.words.end());
        EXPECT_NE(Everything(row.line), Everything(longer)) << row.command << " " << row.parameter;
    }
}

TEST_F(ParametersAreReadTest, AreAllTestedHere) {
    size_t offered = 0;
    for (const KeywordNode* command : CommandGrammar::TopLevel()) {
        for (const KeywordNode* parameter : command->children) {
            ++offered;
            const auto isAbout = [&](const ParameterRow& row) {
                return row.command == command->keyword && row.parameter == parameter->keyword;
            };
            EXPECT_EQ(std::ranges::count_if(Rows(), isAbout), 1)
                << command->keyword << " " << parameter->keyword;
        }
    }
    EXPECT_EQ(Rows().size(), offered);
}

}  // namespace
}  // namespace krvcmd
