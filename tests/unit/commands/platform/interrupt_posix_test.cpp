// Not on Windows: no process sends itself signals; the end-to-end tests press Ctrl-C.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "krvcmd/service/interrupt/interrupt.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using test::Words;

// Interrupted processes. Each test runs in a child process, because a request to end cannot be taken back.
class InterruptTest : public test::CommandTest {
  protected:
    InterruptTest() {
        Farm().AddJukebox(8, "Tower").WithMagazine(3).WithMagazine(3);
        for (const int32_t id : {33, 34, 35})
            Farm().AddVolume(id, "x").At(8, 0, id - 33, krvfake::kSideA);
    }

    // Runs the words, raises `signal` while the library is in the call that `where` names, and prints status
    // and output, then, one a line, the calls from that one on.
    void RunInterrupted(const Words& words, const std::string& where, int signal) {
        InstallInterruptHandler();
        GetBannerFlags() = {false, true};
        std::vector<std::string> calls;
        Fake().RecordTo([&](const std::string& line) {
            if (calls.empty() && line != where) return;
            if (calls.empty()) std::raise(signal);
            calls.push_back(line);
        });
        const test::Outcome outcome = Run(words);
        std::cerr << outcome.status << "\n" << outcome.output;
        for (const std::string& call : calls)
            std::cerr << call << "\n";
    }

    // A child process of RunInterrupted prints "error 4", `output`, the interrupted call and the closing of
    // the session, and nothing else.
    void ExpectInterrupted(const Words& words, const std::string& where, const std::string& output = "",
                           int signal = SIGINT) {
        const auto runAndExit = [&] {
            RunInterrupted(words, where, signal);
            std::exit(0);
        };
        EXPECT_EXIT(runAndExit(), testing::ExitedWithCode(0),
                    testing::Matcher<const std::string&>(
                        testing::Eq("error 4\n" + output + where + "\nKrvSessionClose\n")));
    }
};

using InterruptDeathTest = InterruptTest;

TEST_F(InterruptDeathTest, LetsTheCallInProgressFinishAndClosesTheSession) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ExpectInterrupted({"export", "J@8"}, "KrvMediaExport J=8 M=0 S=1", "", signal);
    }
}

TEST_F(InterruptDeathTest, EndsWithTheInterruptionEvenWhenTheLastCallWasTheLastOfAll) {
    ExpectInterrupted({"export", "J@8", "S1"}, "KrvMediaExport J=8 M=0 S=0");
}

TEST_F(InterruptDeathTest, EndsTheProcessWhileTheSessionIsCreatedOrClosed) {
    for (const char* const call : {R"(KrvSessionCreate server=".")", "KrvSessionClose"}) {
        EXPECT_EXIT(RunInterrupted({"export", "J@8", "S1"}, call, SIGHUP), testing::KilledBySignal(SIGHUP),
                    "^$")
            << call;
    }
}

TEST_F(InterruptDeathTest, PrintsTheRowsGatheredSoFar) {
    ExpectInterrupted({"query", "volumes", "columns=I"}, "KrvVolumeDetail V=34",
                      " Vol ID \n"
                      "--------\n"
                      "     33 \n"
                      "\n");
}

TEST_F(InterruptDeathTest, EndsEveryWalkAndList) {
    ExpectInterrupted({"query", "magazines", "J@8", "columns=m", "notable"}, "KrvGetMagazine J=8 M=0", "1\n");
    ExpectInterrupted({"query", "slots", "J@8", "S1-2000000000", "columns=I", "notable"},
                      "KrvGetSlot J=8 M=0 S=1", "33\n");
    ExpectInterrupted({"scan", "J@8", "S1-2000000000"}, "KrvMediaScan J=8 M=0 S=1 side=2");
    ExpectInterrupted({"enable", "V@1-2000000000"}, "KrvVolumeActivate V=1");
    ExpectInterrupted({"name", "V@1-2000000000", "x"}, R"(KrvVolumeSetAspects V=1 text="x")");
    ExpectInterrupted({"format", "J@8", "S1"},
                      R"(KrvVolumeFormat J=8 M=0 S=0 side=0 label="" certify=0 sequential=0)");
    ExpectInterrupted({"service", "stop"}, "KrvServiceStop");
}

TEST_F(InterruptDeathTest, EndsTheProcessAtOnceTheSecondTime) {
    const auto interruptTwice = [] {
        InstallInterruptHandler();
        std::raise(SIGINT);
        std::this_thread::sleep_for(std::chrono::seconds(kOneRequest));
        std::raise(SIGTERM);
    };
    EXPECT_EXIT(interruptTwice(), testing::KilledBySignal(SIGTERM), "");
}

TEST_F(InterruptDeathTest, TakesSignalsInQuickSuccessionForOne) {
    const auto interruptOften = [] {
        InstallInterruptHandler();
        for (const int signal : {SIGTERM, SIGTERM, SIGINT, SIGHUP})
            std::raise(signal);
        std::exit(InterruptRequested() ? 0 : 1);
    };
    EXPECT_EXIT(interruptOften(), testing::ExitedWithCode(0), "");
}

TEST_F(InterruptDeathTest, LeavesASignalOffThatTheCallerHasSwitchedOff) {
    const auto interruptIgnored = [] {
        (void)std::signal(SIGINT, SIG_IGN);
        InstallInterruptHandler();
        std::raise(SIGINT);
        std::exit(InterruptRequested() ? 1 : 0);
    };
    EXPECT_EXIT(interruptIgnored(), testing::ExitedWithCode(0), "");
}

TEST(Interrupt, IsNotRequestedAtFirst) {
    EXPECT_FALSE(InterruptRequested());
}

}  // namespace
}  // namespace krvcmd
