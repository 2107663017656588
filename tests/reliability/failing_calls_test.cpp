// Not on Windows: standard streams are captured through POSIX; nothing tested here depends on the system.
#include <gtest/gtest.h>

#include <string>

#include "tests/reliability/support/run_checks.h"
#include "tests/reliability/support/small_farm.h"

namespace krvcmd::reliability {
namespace {

using krvfake::FakeLibrary;
using krvfake::Occurrence;
using krvfake::Outputs;

constexpr int32_t kCodes[] = {0, 1, 2, 3, 4, 7, 12, 256, 500, 501, 502, 1001, 0x7FFFFFFF, -1};

void ScriptSmallFarm(FakeLibrary& library) {
    BuildSmallFarm(library.GetFarm());
}

// Each call of each representative command fails once, with each code that means something to the program and
// with some that do not.
class FailingCalls : public testing::TestWithParam<NamedCommand> {
  protected:
    void ExpectLikeTheModel(const Script& script, const std::string& what) {
        const std::string difference = DifferenceFromModel(m_program, GetParam().command, m_words, script);
        EXPECT_EQ(difference, "") << CommandLineText(m_words) << "\nwith " << what;
    }

    // The number of calls without any failure. A failure can lead to more calls.
    int CountCalls() {
        FakeLibrary& library = FakeLibrary::Instance();
        library.Reset();
        ScriptSmallFarm(library);
        return static_cast<int>(m_program.Run(m_words).calls.size());
    }

    ProgramRunner m_program;
    const std::vector<std::string> m_words = Words(GetParam().command);
};

TEST_P(FailingCalls, EndLikeTheModelWhicheverCallFails) {
    constexpr int kBeyond = 6;
    const int count = CountCalls() + kBeyond;
    int runs = 0;
    for (int k = 1; k <= count && !HasFailure(); ++k) {
        for (const int32_t code : kCodes) {
            for (const Outputs outputs : {Outputs::LeftAlone, Outputs::Filled}) {
                const auto script = [&](FakeLibrary& library) {
                    ScriptSmallFarm(library);
                    library.FailCall("*", Occurrence::Nth(k), {code, "It does not work."}, outputs);
                };
                ExpectLikeTheModel(script,
                                   "call " + std::to_string(k) + " failing with " + std::to_string(code));
                ++runs;
            }
        }
    }
    RecordProperty("runs", runs);
}

TEST_P(FailingCalls, EndLikeTheModelWhenAllCallsFailFromOneOn) {
    const int count = CountCalls();
    for (int k = 1; k <= count && !HasFailure(); ++k) {
        for (const int32_t code : kCodes) {
            const auto script = [&](FakeLibrary& library) {
                ScriptSmallFarm(library);
                library.FailCall("*", Occurrence::From(k), {code, ""});
            };
            ExpectLikeTheModel(script,
                               "all from " + std::to_string(k) + " on failing with " + std::to_string(code));
        }
    }
}

TEST_P(FailingCalls, EndLikeTheModelWhenOneFunctionNeverWorks) {
    constexpr const char* kFunctions[] = {
        "KrvSessionCreate",    "KrvSessionClose",   "KrvGetNextJukebox", "KrvGetJukebox",
        "KrvGetMagazine",      "KrvGetDrive",       "KrvGetSlot",        "KrvGetSide",
        "KrvGetNextVolume",    "KrvVolumeDetail",   "KrvVolumeAspects",  "KrvVolumeLocations",
        "KrvMediaImport",      "KrvMediaExport",    "KrvMediaScan",      "KrvVolumeFormat",
        "KrvVolumeErase",      "KrvVolumeFinalize", "KrvVolumeActivate", "KrvVolumeDeactivate",
        "KrvVolumeSetAspects", "KrvJukeboxSetName"};
    for (const char* function : kFunctions) {
        for (const int32_t code : kCodes) {
            const auto script = [&](FakeLibrary& library) {
                ScriptSmallFarm(library);
                library.FailCall(function, Occurrence::Every(), {code, "Never."}, Outputs::Filled);
            };
            ExpectLikeTheModel(script, std::string(function) + " failing with " + std::to_string(code));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, FailingCalls, testing::ValuesIn(RepresentativeCommands()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace krvcmd::reliability
