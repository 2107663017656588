// Not on Windows: malloc is replaced as only the GNU C library lets programs do.

// As out_of_memory_test.cpp, but each run is a process of its own and memory is refused at the level of
// malloc: the standard library's needs, for throwing, sorting and printing, are refused too.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/memory/starved_process.h"
#include "tests/reliability/memory/verdict.h"
#include "tests/reliability/support/order.h"
#include "tests/reliability/support/small_farm.h"

namespace krvcmd::reliability {
namespace {

constexpr size_t kNever = std::numeric_limits<size_t>::max();

const std::vector<std::string> kCommandLines[] = {
    {"help", "service"},
    {"query", "jukeboxes"},
    {"query", "volumes", "V@33,34,273,517,600,700", "notable", "sort=-lI"},
    {"query", "slots", "J=Tower", "width=60"},
    {"export", "J=a name that no jukebox has at all"},
    {"format", "J@8", "S1,3", "label=a label that is rather long, in fact too long for no memory"},
    {"quiet", "name", "V@273", "dir1/volume273"},
    {"query", "no such thing in the whole of the grammar"},
};

class StarvedProcess : public testing::Test {
  protected:
    StarvedProcess() {
        krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
        library.Reset();
        BuildSmallFarm(library.GetFarm());
    }

    static void RefuseEachRequest(bool onlyOnce) {
        size_t points = 0;
        for (const std::vector<std::string>& words : kCommandLines) {
            const StarvedRun whole = RunStarved(words, kNever, kNever);
            ASSERT_GT(whole.requests, 0U);
            for (size_t number = 1; number <= whole.requests; ++number) {
                const StarvedRun starved = RunStarved(words, number, onlyOnce ? number : kNever);
                ASSERT_TRUE(starved.endedByItself) << Spelt(words) << ", request " << number;
                EXPECT_EQ(WhatIsWrong(words, starved.run, whole.run), "")
                    << Spelt(words) << ", request " << number;
            }
            points += whole.requests;
        }
        std::printf("%zu requests for memory refused\n", points);
    }
};

TEST_F(StarvedProcess, OfOneRequestEndsTheRunOrLeavesOutACell) {
    RefuseEachRequest(true);
}

TEST_F(StarvedProcess, ForGoodEndsTheRun) {
    RefuseEachRequest(false);
}

}  // namespace

}  // namespace krvcmd::reliability
