// Not on Windows: standard streams are captured through POSIX; nothing tested here depends on the system.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/command_spec.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/run_checks.h"

namespace krvcmd::reliability {
namespace {

using krvfake::FakeLibrary;
using krvfake::Farm;
using krvfake::kSideA;
using krvfake::Occurrence;
using testing::Lt;
using testing::StartsWith;

constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
constexpr int32_t kSmallest = std::numeric_limits<int32_t>::min();
constexpr int32_t kNonsenseCounts[] = {kSmallest, -2'000'000'000, -1, 0, 2'000'000'000, kLargest};

using CommandLine = std::vector<std::string>;

// A client library that answers with nonsense: enumerations without end, impossible counts, texts without a
// terminator, sizes that change.
class HostileAnswers : public testing::Test {
  protected:
    HostileAnswers() { m_library.Reset(); }

    ProgramRun Run(const CommandLine& words) {
        ProgramRun run = m_program.Run(words);
        EXPECT_EQ(BrokenRule(run), "") << CommandLineText(words);
        return run;
    }

    // As Run, but the operator soon interrupts it: for walks over billions of items.
    ProgramRun RunForAWhile(const CommandLine& words) {
        InterruptAfterChecks(2000);
        ProgramRun run = Run(words);
        CancelInterrupt();
        return run;
    }

    FakeLibrary& m_library = FakeLibrary::Instance();
    Farm& m_farm = m_library.GetFarm();
    ProgramRunner m_program;
};

// ---- Enumerations --------------------------------------------------------------------------------

const CommandLine kCommandsThatEnumerate[] = {
    {"query", "jukeboxes"},
    {"query", "magazines"},
    {"query", "drives"},
    {"query", "slots"},
    {"query", "volumes"},
    {"export", "J=nowhere"},
    {"enable", "J=nowhere", "D=1"},
    {"name", "J=nowhere", "x"},
};

TEST_F(HostileAnswers, AnEnumerationThatRepeatsOneIdEnds) {
    for (const CommandLine& words : kCommandsThatEnumerate) {
        m_library.Reset();
        m_farm.AddJukebox(8, "Tower").WithDrive({}).WithMagazine(1);
        m_farm.AddVolume(33, "Sales");
        m_farm.EnumerateJukeboxes({8}, true);
        m_farm.EnumerateVolumes({33}, true);
        EXPECT_THAT(Run(words).calls.size(), Lt(20U)) << CommandLineText(words);
    }
}

TEST_F(HostileAnswers, ACircularEnumerationEndsAfterAFewRounds) {
    for (const int32_t length : {2, 3, 4, 5, 7, 8, 9, 16, 31, 100}) {
        for (const int32_t leadIn : {0, 1, 6}) {
            m_library.Reset();
            std::vector<int32_t> ids;
            ids.reserve(2100);
            for (int32_t i = 0; i < 20 * length + leadIn; ++i)
                ids.push_back(i < leadIn ? 1000 + i : 1 + (i - leadIn) % length);
            for (int32_t id = 1; id <= length; ++id)
                m_farm.AddJukebox(id, "Tower");
            for (int32_t id = 1000; id < 1000 + leadIn; ++id)
                m_farm.AddJukebox(id, "Tower");
            m_farm.EnumerateJukeboxes(ids, true);

            const ProgramRun run = Run({"query", "jukeboxes"});
            EXPECT_EQ(run.exitStatus, 0);
            // Two calls for each step; the circle is noticed before the fifth round.
            EXPECT_THAT(run.calls.size(), Lt(static_cast<size_t>(2 * (5 * length + leadIn) + 10)))
                << "circle of " << length << " after " << leadIn;
        }
    }
}

TEST_F(HostileAnswers, AnInvalidIdEndsAnEnumeration) {
    for (const int32_t none : {0, -1, -2, kSmallest}) {
        for (const CommandLine& words : kCommandsThatEnumerate) {
            m_library.Reset();
            m_farm.EnumerateJukeboxes({none, 8}, true);
            m_farm.EnumerateVolumes({none, 33}, true);
            const ProgramRun run = Run(words);
            EXPECT_EQ(run.calls.size(), 3U) << CommandLineText(words);
            EXPECT_EQ(run.exitStatus, words.front() == "query" ? 0 : 6) << CommandLineText(words);
        }
    }
}

TEST_F(HostileAnswers, TheLargestIdIsValid) {
    m_farm.AddJukebox(kLargest, "Last").WithMagazine(1);
    m_farm.AddVolume(kLargest, "Label").At(kLargest, 0, 0, kSideA);
    EXPECT_EQ(Run({"query", "volumes", "notable", "columns=IL"}).output, "2147483647|Last\\1.A\n");
    EXPECT_EQ(Run({"query", "volumes", "notable", "columns=IL", "V@2147483647"}).output,
              "2147483647|Last\\1.A\n");
}

TEST_F(HostileAnswers, AnInvalidVolumeIdMeansNoVolume) {
    for (const int32_t none : {0, -1, kSmallest}) {
        m_library.Reset();
        m_farm.AddJukebox(8, "Tower").WithMagazine(1).WithSlot(0, 0, krvfake::slot_state::kFull, 5);
        m_farm.FindJukebox(8)->WithSide(0, 0, kSideA, {6, 5, 1, none});
        const ProgramRun query = Run({"query", "slots", "J@8", "notable"});
        EXPECT_EQ(query.output, "");
        EXPECT_EQ(query.exitStatus, 0);
        // Both sides are looked up, and nothing is done to them.
        const ProgramRun disable = Run({"disable", "J@8", "S1"});
        EXPECT_EQ(disable.exitStatus, 0);
        EXPECT_THAT(disable.calls.at(disable.calls.size() - 2), StartsWith("KrvGetSide"));
    }
}

// ---- Counts --------------------------------------------------------------------------------------

TEST_F(HostileAnswers, ANegativeMagazineCountMeansNone) {
    for (const int32_t count : {kSmallest, -2'000'000'000, -1, 0}) {
        m_library.Reset();
        m_farm.AddJukebox(8, "Tower").WithMagazine(1).claimedMagazines = count;
        const ProgramRun magazines = Run({"query", "magazines", "J@8", "notable"});
        EXPECT_EQ(magazines.output, "");
        EXPECT_EQ(magazines.exitStatus, 0);
        EXPECT_EQ(Run({"query", "slots", "J@8"}).exitStatus, 2);
        EXPECT_EQ(Run({"export", "J@8"}).exitStatus, 2);
        EXPECT_EQ(Run({"export", "J@8", "S1"}).exitStatus, 22);
        EXPECT_EQ(Run({"export", "J@8", "M1", "S1"}).exitStatus, 2);
    }
}

TEST_F(HostileAnswers, AWalkEndsAtTheFirstMissingSlotWhateverTheMagazineCount) {
    for (const int32_t count : {2'000'000'000, kLargest}) {
        m_library.Reset();
        m_farm.AddJukebox(8, "Tower").WithMagazine(2).claimedMagazines = count;
        m_library.FailCall("KrvMediaExport J=8 M=1 S=0", Occurrence::Every(), {1001, "No such slot."});
        for (const CommandLine& words : {CommandLine{"query", "slots", "J@8"}, {"export", "J@8"}}) {
            const ProgramRun run = Run(words);
            EXPECT_EQ(run.exitStatus, 1001 % 256);
            EXPECT_THAT(run.calls.size(), Lt(20U));
        }
    }
}

TEST_F(HostileAnswers, ANegativeDriveCountMeansNone) {
    for (const int32_t count : {kSmallest, -1, 0}) {
        m_library.Reset();
        m_farm.AddJukebox(8, "Tower").claimedDrives = count;
        const ProgramRun run = Run({"query", "drives", "J@8", "notable"});
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.exitStatus, 2);
    }
}

TEST_F(HostileAnswers, ANegativeSlotCountMeansNone) {
    for (const int32_t count : {kSmallest, -1, 0}) {
        m_library.Reset();
        m_farm.AddJukebox(8, "Tower").WithMagazine(count).WithMagazine(1);
        EXPECT_EQ(Run({"query", "slots", "J@8"}).exitStatus, 22);
        EXPECT_EQ(Run({"import", "J@8", "M1"}).exitStatus, 22);
        EXPECT_EQ(Run({"import", "J@8", "M1", "S1"}).exitStatus, 22);
        EXPECT_EQ(Run({"import", "J@8", "M2"}).exitStatus, 0);
    }
}

// Every item needs a call of its own. The operator can end that, and sees the rows gathered so far.
TEST_F(HostileAnswers, AWalkOverCountlessItemsCanBeInterrupted) {
    for (const int32_t count : {2'000'000'000, kLargest}) {
        m_library.Reset();
        krvfake::Jukebox& jukebox =
            m_farm.AddJukebox(8, "Tower").WithDrive({"", "Reader", "", {}}).WithMagazine(1);
        jukebox.claimedDrives = count;
        jukebox.claimedMagazines = count;
        EXPECT_EQ(RunForAWhile({"query", "drives", "J@8", "notable", "col=NdP"}).output, "Tower|1|Reader\n");
        EXPECT_EQ(RunForAWhile({"query", "magazines", "notable", "col=NmS"}).output, "Tower|1|1\n");

        jukebox.magazines.front().slotCount = count;
        for (const CommandLine& words : {CommandLine{"query", "drives"},
                                         {"query", "magazines", "J@8"},
                                         {"query", "slots"},
                                         {"import", "J@8", "M1"},
                                         {"export", "J@8"},
                                         {"scan", "J@8", "S1-2147483647"},
                                         {"format", "J@8", "M1", "erase"},
                                         {"enable", "J@8", "S1-2147483647"},
                                         {"enable", "V@1-2147483647"},
                                         {"name", "V@1-2147483647", "x"},
                                         {"query", "slots", "J@8", "S5-2147483647"},
                                         {"export", "J@8", "M1-2147483647"},
                                         {"export", "J@8", "M1", "repeat=2147483647"}}) {
            const ProgramRun run = RunForAWhile(words);
            EXPECT_EQ(run.exitStatus, 4) << CommandLineText(words);
            EXPECT_EQ(run.errorOutput, "OS error 4: Interrupted system call\n");
        }
    }
}

TEST_F(HostileAnswers, CountsAreShownUnchecked) {
    for (const int32_t count : kNonsenseCounts) {
        m_library.Reset();
        krvfake::Jukebox& jukebox = m_farm.AddJukebox(8, "Tower").WithMagazine(count);
        jukebox.claimedDrives = count;
        jukebox.claimedMagazines = count;
        jukebox.claimedSlots = count;
        const std::string number = std::to_string(count);
        EXPECT_EQ(Run({"query", "jukeboxes", "notable", "col=DMS", "sep=,"}).output,
                  std::string(number).append(",").append(number).append(",").append(number).append("\n"));
        jukebox.claimedMagazines = 1;
        // A magazine without slots has no cell for their number.
        EXPECT_EQ(Run({"query", "magazines", "notable", "col=mS"}).output,
                  count == 0 ? "1\n" : "1|" + number + "\n");
    }
}

// ---- Locations -------------------------------------------------------------------------------------

TEST_F(HostileAnswers, LocationsBeyondTheArrayAreIgnored) {
    struct Case {
        std::vector<uint32_t> counts;  // answered by the two calls
        const char* output;
    };
    const Case kCases[] = {
        {{2, 3}, "33|Tower\\1.A\n33|Tower\\2.A\n"},
        {{2, 0xFFFFFFFF}, "33|Tower\\1.A\n33|Tower\\2.A\n"},
        {{3, 1}, "33|Tower\\1.A\n"},
        {{3, 0}, "33\n"},
        {{1, 9}, "33|Tower\\1.A\n"},
        {{0, 9}, "33\n"},
    };
    for (const Case& given : kCases) {
        m_library.Reset();
        m_farm.AddJukebox(8, "Tower").WithMagazine(3);
        m_farm.AddVolume(33, "Sales")
            .At(8, 0, 0, kSideA)
            .At(8, 0, 1, kSideA)
            .At(8, 0, 2, kSideA)
            .locationCounts = given.counts;
        const ProgramRun run = Run({"query", "volumes", "notable", "col=IL", "sort="});
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_EQ(run.output, given.output) << given.counts.front();
    }
}

TEST_F(HostileAnswers, LocationsAtTheEndsOfTheNumberRangeLeadNowhere) {
    for (const int32_t number : {kLargest, kLargest - 1, kSmallest, kSmallest + 1, -2}) {
        for (const CommandLine& words : {CommandLine{"export", "V@33"},
                                         {"scan", "V@33"},
                                         {"format", "V@33"},
                                         {"query", "volumes", "V@33"}}) {
            m_library.Reset();
            m_farm.AddJukebox(8, "Tower").WithMagazine(1);
            m_farm.AddVolume(33, "Sales").SaysItIsAt(8, number, number, number);
            Run(words);
            m_library.Reset();
            m_farm.AddVolume(33, "Sales").SaysItIsAt(number, number, number, number);
            EXPECT_NE(Run(words).exitStatus, 0) << CommandLineText(words) << " " << number;
        }
    }
}

// ---- Directories -----------------------------------------------------------------------------------

TEST_F(HostileAnswers, DirectoriesAreReadOnlyInsideTheBuffer) {
    struct Case {
        std::string bytes;            // put into the buffer, as far as they fit
        std::vector<uint32_t> sizes;  // answered by the two calls
        const char* directory;
    };
    const Case kCases[] = {
        {"abc", {3}, "abc"},                          // no terminator for text and list
        {std::string("abc\0", 4), {4}, "abc"},        // none for the list
        {"abcdef", {2}, "ab"},                        // the buffer is too small
        {"abcdef", {3, 200}, "abc"},                  // and the list grows
        {std::string("abc\0def", 7), {7, 1}, "abc"},  // or shrinks
        {"abcdef", {1}, ""},                          // space for an empty text only
        {"abcdef", {0, 6}, ""},                       // no directory in the first answer
        {std::string("\0abc\0\0", 6), {6}, ""},       // the list starts with its terminator
    };
    for (const Case& given : kCases) {
        m_library.Reset();
        krvfake::Volume& volume = m_farm.AddVolume(33, "Sales");
        volume.aspectBytes = given.bytes;
        volume.aspectSizes = given.sizes;
        const ProgramRun run = Run({"query", "volumes", "notable", "col=nI"});
        EXPECT_EQ(run.exitStatus, 0);
        // A column that no row fills is left out, as is the separator before the first column.
        EXPECT_EQ(run.output,
                  std::string(given.directory).empty() ? "|33\n" : given.directory + std::string("|33\n"));
    }
}

// The program requests as much memory as the library says, and touches only what the library wrote.
TEST_F(HostileAnswers, AListOfDirectoriesMayClaimAnySize) {
    m_farm.AddVolume(33, "Sales").aspectSizes = {0xFFFFFFFF};
    m_farm.FindVolume(33)->aspectBytes = "here";
    const ProgramRun run = Run({"query", "volumes", "notable", "col=In"});
    // A system without overcommitment may refuse it.
    if (run.exitStatus == 12) return;
    EXPECT_EQ(run.output, "33|here\n");
}

// ---- Texts -----------------------------------------------------------------------------------------

TEST_F(HostileAnswers, AnUnterminatedTextEndsWithItsField) {
    const std::string endless(2000, 'x');
    m_farm.AddJukebox(8, endless)
        .WithChanger({endless, endless, endless, {kLargest, kSmallest, -1}})
        .WithDrive({endless, endless, endless, {}})
        .WithMagazine(1);
    m_farm.AddVolume(33, endless).WithFileSystem(endless).At(8, 0, 0, kSideA);
    const auto x = [](size_t count) { return std::string(count, 'x'); };
    EXPECT_EQ(Run({"query", "jukeboxes", "notable", "col=NPRC"}).output,
              x(52) + "|" + x(9) + " " + x(17) + "|" + x(5) + "|2147483647/-2147483648/-1\n");
    EXPECT_EQ(Run({"query", "drives", "notable", "col=PR"}).output, x(9) + " " + x(17) + "|" + x(5) + "\n");
    EXPECT_EQ(Run({"query", "volumes", "notable", "col=lfL"}).output,
              x(256) + "|" + x(30) + "|" + x(52) + "\\1.A\n");
    // A name of 52 bytes finds the jukebox; one byte more is another name.
    EXPECT_EQ(Run({"query", "magazines", "J=" + x(52)}).exitStatus, 0);
    EXPECT_EQ(Run({"query", "magazines", "J=" + x(53)}).exitStatus, 6);
    EXPECT_EQ(Run({"query", "magazines", "J=" + x(51)}).exitStatus, 6);
}

TEST_F(HostileAnswers, AnUnterminatedErrorTextEndsWithItsField) {
    m_farm.AddJukebox(8, "Tower");
    m_library.FailCall("KrvActivateJukebox", Occurrence::Every(), {5, std::string(3000, 'e')});
    EXPECT_EQ(Run({"enable", "J@8"}).errorOutput, "KRV error 5: " + std::string(1024, 'e') + "\n");
}

TEST_F(HostileAnswers, AnErrorTextIsNeverAFormat) {
    m_farm.AddJukebox(8, "Tower");
    m_library.FailCall("KrvActivateJukebox", Occurrence::Every(), {5, "%s%n%d%x 100% %1$n%*d"});
    EXPECT_EQ(Run({"enable", "J@8"}).errorOutput, "KRV error 5: %s%n%d%x 100% %1$n%*d\n");
}

}  // namespace
}  // namespace krvcmd::reliability
