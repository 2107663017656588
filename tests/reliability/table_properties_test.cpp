// Not on Windows: standard streams are caught by means of POSIX; nothing tested here depends on the system.

// What holds for every table, whatever is in it.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/dice.h"
#include "tests/reliability/support/general_rules.h"
#include "tests/reliability/support/insertion_order.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/seeds.h"

namespace krvcmd::reliability {
namespace {

using krvfake::FakeLibrary;

constexpr char kSeparator = '\x01';

// ASCII, without what the console shows in another way; often with a number at the end. Never empty: an empty
// text in unformatted output is a cell that the row lacks.
std::string RandomLabel(Dice& dice) {
    constexpr const char* kWords[] = {"Disc", "Sales", "A", "b", "-", "Disc-1", "10", "7"};
    constexpr const char* kJoints[] = {"-", "@", ",", ";", ":", ".", " ", "", "_"};
    std::string label = dice.Pick(kWords);
    if (dice.OneIn(2)) label += dice.Pick(kJoints) + std::to_string(dice.Below(12));
    if (dice.OneIn(30)) label += "99999999999";
    if (dice.OneIn(8)) label += '%';
    if (dice.OneIn(6)) label += std::string(dice.Below(60), 'x');
    return label;
}

uint64_t RandomCapacity(Dice& dice) {
    return dice.OneIn(4) ? dice.Below(3) * 1000 : dice.Next() >> dice.Below(64);
}

void FillFarm(krvfake::Farm& farm, Dice& dice, int32_t largestCount) {
    constexpr uint32_t kMediaTypes[] = {0, 1, 5, 20, 26, 254, 255};
    farm.AddJukebox(8, "Tower").WithMagazine(40).WithMagazine(40);
    farm.AddJukebox(11, "MyBox").WithMagazine(40);
    const int32_t count = dice.Between(0, largestCount);
    for (int32_t id = 1; id <= count; ++id) {
        krvfake::Volume& volume = farm.AddVolume(id, RandomLabel(dice));
        volume.WithCapacity(RandomCapacity(dice), RandomCapacity(dice))
            .WithType(static_cast<uint32_t>(dice.Below(3)))
            .InState(static_cast<uint32_t>(dice.Below(4)))
            .WithMedium(dice.Pick(kMediaTypes));
        if (dice.OneIn(2)) volume.WithDirectory("archive\\" + RandomLabel(dice) + "\\x");
        if (dice.OneIn(5)) continue;
        const int32_t jukebox = dice.OneIn(2) ? 8 : 11;
        volume.At(jukebox, jukebox == 8 ? dice.Between(0, 1) : 0, dice.Between(0, 39), dice.Between(0, 1));
    }
}

std::vector<Cells> RowsOf(const std::string& output) {
    std::vector<Cells> rows;
    Cells row(1);
    for (const char character : output) {
        if (character == '\n') {
            rows.push_back(row);
            row.assign(1, "");
        } else if (character == kSeparator) {
            row.emplace_back();
        } else {
            row.back() += character;
        }
    }
    return rows;
}

// The columns that are asked for, in this order, and how each is compared. The capacities with units are
// compared by their bytes, which stand in columns of their own.
struct SortLetter {
    size_t column;
    char letter;
    bool isNumber;
};
constexpr const char* kColumns = "ILlmsatvofnXYz";
constexpr SortLetter kSortLetters[] = {{0, 'I', true},  {1, 'L', false}, {2, 'l', false},  {3, 'm', true},
                                       {4, 's', true},  {5, 'a', false}, {6, 't', false},  {7, 'v', false},
                                       {8, 'o', false}, {9, 'f', false}, {10, 'n', false}, {11, 'X', true},
                                       {12, 'Y', true}, {13, 'z', true}, {11, 'x', true},  {12, 'y', true}};

class TableProperties : public testing::Test {
  protected:
    std::string Query(const std::vector<std::string>& options) {
        std::vector<std::string> words = {"quiet", "query", "volumes"};
        words.insert(words.end(), options.begin(), options.end());
        const ProgramRun run = m_program.Run(words);
        EXPECT_EQ(BrokenRules(run), "");
        EXPECT_EQ(run.exitStatus, 0);
        return run.output;
    }

    ProgramRunner m_program;
};

TEST_F(TableProperties, RowsStandAsInsertedOneByOne) {
    const Seeds seeds = SeedsToTry(600);
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        Dice dice(seed);
        FakeLibrary::Instance().Reset();
        FillFarm(FakeLibrary::Instance().GetFarm(), dice, 60);
        // Columns that no row fills are left out; this row fills all of them, and is the first in any case.
        FakeLibrary::Instance().GetFarm().AddVolume(1000, "Z").WithMedium(1).WithDirectory("d").At(8, 1, 39,
                                                                                                   1);

        std::string sort;
        std::vector<OrderKey> keys;
        bool isDescending = false;
        for (size_t count = dice.Below(5); count > 0; --count) {
            if (dice.OneIn(3)) {
                isDescending = !isDescending;
                sort += isDescending ? '-' : '+';
            }
            const SortLetter& letter = dice.Pick(kSortLetters);
            sort += letter.letter;
            keys.push_back({letter.column, letter.isNumber, isDescending});
        }
        const std::vector<std::string> options = {"notable", std::string("columns=") + kColumns,
                                                  std::string("separator=") + kSeparator};
        std::vector<std::string> sorted = options;
        sorted.push_back("sort=" + sort);
        std::vector<std::string> unsorted = options;
        unsorted.emplace_back("sort=");
        const std::vector<Cells> shown = RowsOf(Query(sorted));
        const std::vector<Cells> expected = InsertedOneByOne(RowsOf(Query(unsorted)), keys);
        ASSERT_EQ(shown.size(), expected.size());
        for (size_t row = 0; row < shown.size(); ++row)
            ASSERT_EQ(shown[row], expected[row]) << "row " << row << ", sort=" << sort << ", seed " << seed;
    }
}

// A line whose end is a per cent sign is not cut, so that nothing is promised for it.
bool IsCutToWidth(std::string_view line) {
    return line.substr(line.size() < 3 ? 0 : line.size() - 3).find('%') == std::string_view::npos;
}

TEST_F(TableProperties, NoLineIsWiderThanTheWidth) {
    constexpr std::string_view kLetters = "SDMIJNLmdsaCRPFnlvftxXzyYo";
    const Seeds seeds = SeedsToTry(40);
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        Dice dice(seed);
        FakeLibrary::Instance().Reset();
        FillFarm(FakeLibrary::Instance().GetFarm(), dice, 6);
        std::string columns;
        for (size_t count = 1 + dice.Below(14); count > 0; --count)
            columns += kLetters[dice.Below(kLetters.size())];
        const std::string separator(dice.Below(4), '|');
        for (size_t width = 0; width <= 300; width += 1 + dice.Below(4)) {
            const std::string table =
                Query({"columns=" + columns, "width=" + std::to_string(width), "separator=" + separator});
            for (size_t begin = 0; begin < table.size();) {
                const size_t end = table.find('\n', begin);
                const std::string_view line = std::string_view(table).substr(begin, end - begin);
                begin = end + 1;
                if (width == 0 || !IsCutToWidth(line)) continue;
                ASSERT_LE(line.size(), width)
                    << line << "\nof columns=" << columns << " with the seed " << seed;
            }
        }
    }
}

}  // namespace

}  // namespace krvcmd::reliability
