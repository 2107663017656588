// Not on Windows: standard streams are captured through POSIX; nothing tested here depends on the system.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "krvcmd/frontend/driver/driver.h"
#include "tests/fake_library/fake_library.h"
#include "tests/reliability/memory/out_of_memory_checks.h"
#include "tests/reliability/memory/refused_allocations.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/small_farm.h"

namespace krvcmd::reliability {
namespace {

using krvfake::FakeLibrary;
using krvfake::Occurrence;
using Refuse = RefusedAllocations::Refuse;

struct CommandLine {
    std::vector<std::string> words;
    std::string failingFunction{};  // empty: every call works
};

// The representative commands and further command lines: help, faults, errors of the service.
std::vector<CommandLine> AllCommandLines() {
    std::vector<CommandLine> lines = {
        {{}},
        {{"quiet"}},
        {{"help"}},
        {{"?"}},
        {{"quiet", "help", "query"}},
        {{"help", "format"}},
        {{"help", "?"}},
        {{"help", "a word that is longer than any keyword of the grammar"}},
        {{"q"}},
        {{"query", "volumes", "scan"}},
        {{"query", "volumes", "a parameter that is longer than any keyword of the grammar"}},
        {{"export", "J@8,9,10,11", "S1,2,3,4,5,6,7-9", ".A"}},
        {{"export", "J@8", "S1,2,3,4,5,6,7-"}},
        {{"server=a server with a name that is rather long", "export", "J=a name that no jukebox has at all",
          "S1-3,7"}},
        {{"server=a server with a name that is rather long", "service", "start"}},
        {{"query", "volumes", "columns=ILl",
          "sort=a sort order that is longer than any text that needs no memory"}},
        {{"query", "slots", "width=40"}},
        {{"query", "slots", "J=Tower", "width=120", "sort=-sml", "separator=||||||||||||||||||||"}},
        {{"query", "volumes", "V@33,34,273,517,600,700", "notable", "sort=-lI"}},
        {{"query", "volumes"}, "KrvVolumeDetail"},
        {{"query", "magazines"}, "KrvGetMagazine"},
        {{"query", "drives"}, "KrvGetDrive"},
        {{"import", "J@8", "M1"}, "KrvMediaImport"},
        {{"quiet", "export", "J@8"}, "KrvMediaExport"},
        {{"format", "V@33"}, "KrvVolumeFormat"},
        {{"scan", "J=Tower"}, "KrvGetJukebox"},
        {{"disable", "J@8", "S1"}, "KrvGetSide"},
        {{"service", "stop"}, "KrvServiceStop"},
        {{"enable", "V@33"}, "KrvSessionCreate"},
    };
    for (const NamedCommand& named : RepresentativeCommands())
        lines.push_back({Words(named.command)});
    return lines;
}

// Too long for a std::string without memory of its own.
constexpr const char* kExplanation = "The service is not able to do this at the moment.";

// Each request for memory that a command makes is refused, alone and together with all after it.
class OutOfMemory : public testing::Test {
  protected:
    ProgramRun Run(const CommandLine& line, size_t refused, Refuse refuse) {
        FakeLibrary& library = FakeLibrary::Instance();
        library.Reset();
        BuildSmallFarm(library.GetFarm());
        if (!line.failingFunction.empty()) {
            library.FailCall(line.failingFunction, Occurrence::From(2), {1001, kExplanation});
            if (line.failingFunction.starts_with("KrvS")) {
                library.FailCall(line.failingFunction, Occurrence::Every(), {1001, kExplanation});
            }
        }
        return m_program.Run(line.words, [&](ProgramRunner::Arguments arguments) {
            const RefusedAllocations memory(refused, refuse);
            return RunProgram(arguments);
        });
    }

    void RefuseEachRequest(Refuse refuse) {
        constexpr size_t kNever = 0x7FFFFFFF;
        size_t points = 0;
        size_t ended = 0;
        size_t passedOver = 0;
        for (const CommandLine& line : AllCommandLines()) {
            const ProgramRun whole = Run(line, kNever, refuse);
            const size_t requests = RefusedAllocations::Requests();
            for (size_t number = 1; number <= requests; ++number) {
                const ProgramRun run = Run(line, number, refuse);
                ASSERT_GE(RefusedAllocations::Requests(), number);
                EXPECT_EQ(OutOfMemoryProblem(line.words, run, whole), "")
                    << CommandLineText(line.words) << "\nrequest " << number << " of " << requests
                    << " refused" << (refuse == Refuse::Once ? "" : " and all after it");
                EXPECT_EQ(RefusedAllocations::BlocksInUse(), 0)
                    << CommandLineText(line.words) << ", request " << number;
                ended += run.exitStatus == 12 ? 1U : 0U;
                passedOver +=
                    run.exitStatus == whole.exitStatus && run.calls.size() < whole.calls.size() ? 1U : 0U;
            }
            points += requests;
        }
        // The list of volumes goes on when the buffer for one volume's aspects or locations is refused.
        if (refuse == Refuse::Once) {
            EXPECT_GT(passedOver, 0U);
        }
        std::printf("%zu requests for memory refused, %zu runs ended with error 12\n", points, ended);
    }

  private:
    ProgramRunner m_program;
};

TEST_F(OutOfMemory, RefusedOnceEndsTheRunOrLeavesOutACell) {
    RefuseEachRequest(Refuse::Once);
}

TEST_F(OutOfMemory, RefusedFromOneRequestOnEndsTheRun) {
    RefuseEachRequest(Refuse::AllFromThere);
}

}  // namespace
}  // namespace krvcmd::reliability
