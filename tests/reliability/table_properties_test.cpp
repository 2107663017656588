// Not on Windows: standard streams are captured through POSIX; nothing tested here depends on the system.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/random_numbers.h"
#include "tests/reliability/support/run_checks.h"

namespace krvcmd::reliability {
namespace {

using krvfake::FakeLibrary;

constexpr char kSeparator = '\x01';

// Printable ASCII, often with a number at the end. Never empty: an empty text in unformatted output is a
// missing cell.
std::string RandomLabel(RandomNumbers& random) {
    constexpr const char* kWords[] = {"Disc", "Sales", "A", "b", "-", "Disc-1", "10", "7"};
    constexpr const char* kJoints[] = {"-", "@", ",", ";", ":", ".", " ", "", "_"};
    std::string label = random.Pick(kWords);
    if (random.OneIn(2)) label += random.Pick(kJoints) + std::to_string(random.Below(12));
    if (random.OneIn(30)) label += "99999999999";
    if (random.OneIn(8)) label += '%';
    if (random.OneIn(6)) label += std::string(random.Below(60), 'x');
    return label;
}

uint64_t RandomCapacity(RandomNumbers& random) {
    return random.OneIn(4) ? random.Below(3) * 1000 : random.Next() >> random.Below(64);
}

void FillFarm(krvfake::Farm& farm, RandomNumbers& random, int32_t largestCount) {
    constexpr uint32_t kMediaTypes[] = {0, 1, 5, 20, 26, 254, 255};
    farm.AddJukebox(8, "Tower").WithMagazine(40).WithMagazine(40);
    farm.AddJukebox(11, "MyBox").WithMagazine(40);
    const int32_t count = random.Between(0, largestCount);
    for (int32_t id = 1; id <= count; ++id) {
        krvfake::Volume& volume = farm.AddVolume(id, RandomLabel(random));
        volume.WithCapacity(RandomCapacity(random), RandomCapacity(random))
            .WithType(static_cast<uint32_t>(random.Below(3)))
            .InState(static_cast<uint32_t>(random.Below(4)))
            .WithMedium(random.Pick(kMediaTypes));
        if (random.OneIn(2)) volume.WithDirectory("archive\\" + RandomLabel(random) + "\\x");
        if (random.OneIn(5)) continue;
        const int32_t jukebox = random.OneIn(2) ? 8 : 11;
        volume.At(jukebox, jukebox == 8 ? random.Between(0, 1) : 0, random.Between(0, 39),
                  random.Between(0, 1));
    }
}

// A row as its cells, column by column; an empty text is a missing cell.
using Cells = std::vector<std::string>;

struct SortKey {
    size_t column;
    bool isNumber;
    bool isDescending;
};

int Sign(bool less, bool greater) {
    return less ? -1 : (greater ? 1 : 0);
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

struct SplitText {
    std::string prefix;
    int64_t number = 0;
};

SplitText Split(std::string_view text) {
    size_t stop = text.empty() ? 0 : text.size() - 1;
    const auto isOfNumber = [&](size_t at) {
        return IsDigit(text[at]) || (text[at] == '%' && at + 1 == text.size());
    };
    while (stop > 0 && isOfNumber(stop))
        --stop;
    constexpr std::string_view kSeparators = "-@,;:. ";
    const bool isAtEnd = stop + 1 >= text.size();
    if (isAtEnd || kSeparators.find(text[stop]) == std::string_view::npos) return {std::string(text), 0};
    const int64_t number = std::strtoll(std::string(text.substr(stop + 1)).c_str(), nullptr, 10);
    // Numbers have 32 bits.
    return {std::string(text.substr(0, stop)),
            number > std::numeric_limits<int32_t>::max() ? std::numeric_limits<int32_t>::max() : number};
}

// -1, 0 or 1. Texts that are equal up to "-@,;:. " and a number at the end are ordered by the number.
int CompareTexts(std::string_view left, std::string_view right) {
    const SplitText first = Split(left);
    const SplitText second = Split(right);
    if (const int result = first.prefix.compare(second.prefix); result != 0) return Sign(result < 0, true);
    return Sign(first.number<second.number, first.number> second.number);
}

int CompareNumbers(const std::string& left, const std::string& right) {
    const int64_t first = std::strtoll(left.c_str(), nullptr, 10);
    const int64_t second = std::strtoll(right.c_str(), nullptr, 10);
    return Sign(first<second, first> second);
}

int CompareCells(const std::string& left, const std::string& right, bool areNumbers) {
    if (left.empty() || right.empty()) return Sign(left.empty() && !right.empty(), !left.empty());
    return areNumbers ? CompareNumbers(left, right) : CompareTexts(left, right);
}

bool BelongsBefore(const Cells& row, const Cells& other, const std::vector<SortKey>& keys) {
    for (const SortKey& key : keys) {
        const int result = CompareCells(row[key.column], other[key.column], key.isNumber);
        if (result != 0) return result == (key.isDescending ? 1 : -1);
    }
    return false;
}

// Sorts the rows by inserting one after the other: each goes before the first row that it belongs before, or
// to the end.
std::vector<Cells> InsertedOneByOne(const std::vector<Cells>& arrived, const std::vector<SortKey>& keys) {
    std::vector<Cells> rows;
    for (const Cells& row : arrived) {
        auto place = rows.begin();
        while (place != rows.end() && !BelongsBefore(row, *place, keys))
            ++place;
        rows.insert(place, row);
    }
    return rows;
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

// The requested columns, in this order, and how each is compared. Capacities with units are compared by their
// bytes, which have columns of their own.
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
        EXPECT_EQ(BrokenRule(run), "");
        EXPECT_EQ(run.exitStatus, 0);
        return run.output;
    }

    ProgramRunner m_program;
};

TEST_F(TableProperties, RowsHaveTheOrderOfAnInsertionSort) {
    const Seeds seeds = SeedsToTry(600);
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        RandomNumbers random(seed);
        FakeLibrary::Instance().Reset();
        FillFarm(FakeLibrary::Instance().GetFarm(), random, 60);
        // Columns that no row fills are left out. This row fills all of them.
        FakeLibrary::Instance().GetFarm().AddVolume(1000, "Z").WithMedium(1).WithDirectory("d").At(8, 1, 39,
                                                                                                   1);

        std::string sort;
        std::vector<SortKey> keys;
        bool isDescending = false;
        for (size_t count = random.Below(5); count > 0; --count) {
            if (random.OneIn(3)) {
                isDescending = !isDescending;
                sort += isDescending ? '-' : '+';
            }
            const SortLetter& letter = random.Pick(kSortLetters);
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

// A line that ends in a percent sign is not cut.
bool IsCutToWidth(std::string_view line) {
    return line.substr(line.size() < 3 ? 0 : line.size() - 3).find('%') == std::string_view::npos;
}

TEST_F(TableProperties, NoLineIsWiderThanTheWidth) {
    constexpr std::string_view kLetters = "SDMIJNLmdsaCRPFnlvftxXzyYo";
    const Seeds seeds = SeedsToTry(40);
    for (uint64_t seed = seeds.first; seed < seeds.end; ++seed) {
        RandomNumbers random(seed);
        FakeLibrary::Instance().Reset();
        FillFarm(FakeLibrary::Instance().GetFarm(), random, 6);
        std::string columns;
        for (size_t count = 1 + random.Below(14); count > 0; --count)
            columns += kLetters[random.Below(kLetters.size())];
        const std::string separator(random.Below(4), '|');
        for (size_t width = 0; width <= 300; width += 1 + random.Below(4)) {
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
