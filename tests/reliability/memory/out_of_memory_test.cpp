// Not on Windows: standard streams are caught by means of POSIX; nothing tested here depends on the system.

// Every single request for memory that a command makes is refused, alone and together with all after it.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "krvcmd/frontend/driver/driver.h"
#include "tests/fake_library/fake_library.h"
#include "tests/reliability/memory/short_memory.h"
#include "tests/reliability/memory/verdict.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/representative_orders.h"
#include "tests/reliability/support/small_farm.h"

namespace krvcmd::reliability {
namespace {

using krvfake::FakeLibrary;
using krvfake::Occurrence;
using Refuse = ShortMemory::Refuse;

struct CommandLine {
    std::vector<std::string> words;
    std::string failingFunction{};  // empty: every call works
};

// Command lines that are no orders: help, faults, and work that ends with an error of the service.
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
    for (const NamedOrder& named : RepresentativeOrders())
        lines.push_back({Words(named.order)});
    return lines;
}

// A failing service explains itself in more letters than fit into a text without memory of its own.
constexpr const char* kExplanation = "The service is not able to do this at the moment.";

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
            const ShortMemory memory(refused, refuse);
            return RunProgram(arguments);
        });
    }

    void RefuseEachRequest(Refuse refuse) {
        constexpr size_t kNever = 0x7FFFFFFF;
        size_t points = 0;
        size_t ended = 0;
        for (const CommandLine& line : AllCommandLines()) {
            const ProgramRun whole = Run(line, kNever, refuse);
            const size_t requests = ShortMemory::Requests();
            for (size_t number = 1; number <= requests; ++number) {
                const ProgramRun run = Run(line, number, refuse);
                ASSERT_GE(ShortMemory::Requests(), number);
                EXPECT_EQ(WhatIsWrong(line.words, run, whole), "")
                    << Spelt(line.words) << "\nrequest " << number << " of " << requests << " refused"
                    << (refuse == Refuse::Once ? "" : " and all after it");
                EXPECT_EQ(ShortMemory::BlocksHeld(), 0) << Spelt(line.words) << ", request " << number;
                ended += run.exitStatus == 12 ? 1U : 0U;
            }
            points += requests;
        }
        std::printf("%zu requests for memory refused, %zu runs ended with error 12\n", points, ended);
    }

  private:
    ProgramRunner m_program;
};

TEST_F(OutOfMemory, OnceEndsTheRunOrLeavesOutACell) {
    RefuseEachRequest(Refuse::Once);
}

TEST_F(OutOfMemory, ForGoodEndsTheRun) {
    RefuseEachRequest(Refuse::FromThereOn);
}

}  // namespace

}  // namespace krvcmd::reliability
