// Not on Windows: malloc is replaced as only the GNU C library lets programs do.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "krvcmd/frontend/driver/driver.h"
#include "tests/fake_library/fake_library.h"
#include "tests/reliability/memory/out_of_memory_checks.h"
#include "tests/reliability/support/command_spec.h"
#include "tests/reliability/support/program_run.h"
#include "tests/reliability/support/small_farm.h"

// The C library's own functions, by the names that it keeps for programs that replace the usual ones.
extern "C" {
void* RealMalloc(size_t size) asm("__libc_malloc");
void* RealCalloc(size_t count, size_t size) asm("__libc_calloc");
void* RealRealloc(void* memory, size_t size) asm("__libc_realloc");

// The replacements: all memory of the process comes through these.
void* RefusingMalloc(size_t size) asm("malloc");
void* RefusingCalloc(size_t count, size_t size) asm("calloc");
void* RefusingRealloc(void* memory, size_t size) asm("realloc");
}

namespace krvcmd::reliability {
namespace {

struct Watch {
    bool isOn = false;
    size_t firstRefused = 0;
    size_t lastRefused = 0;
    size_t requests = 0;
};

constinit Watch watch;

bool Refuses() {
    if (!watch.isOn || krvfake::FakeLibrary::IsAtWork()) return false;
    ++watch.requests;
    const bool refuses = watch.requests >= watch.firstRefused && watch.requests <= watch.lastRefused;
    if (refuses) errno = ENOMEM;
    return refuses;
}

void Require(bool done) {
    if (!done) std::abort();
}

// What the process leaves behind; each is a file in memory.
enum Trace : size_t { kOutput, kErrorOutput, kCalls, kRequests, kTraceCount };
using Traces = std::array<int, kTraceCount>;

Traces OpenTraces() {
    Traces traces{};
    for (int& trace : traces) {
        trace = memfd_create("trace", MFD_CLOEXEC);
        Require(trace >= 0);
    }
    return traces;
}

std::string TakeTrace(int trace) {
    std::string text(static_cast<size_t>(lseek(trace, 0, SEEK_END)), '\0');
    Require(pread(trace, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
    Require(close(trace) == 0);
    return text;
}

void WriteAll(int file, const void* bytes, size_t count) {
    Require(write(file, bytes, count) == static_cast<ssize_t>(count));
}

// Runs the program in the child process, which ends with its exit status.
[[noreturn]] void RunAndExit(const std::vector<const char*>& arguments, const Traces& traces,
                             size_t firstRefused, size_t lastRefused) {
    Require(dup2(traces[kOutput], STDOUT_FILENO) >= 0 && dup2(traces[kErrorOutput], STDERR_FILENO) >= 0);
    // A stream of a fresh process has no buffer yet.
    stdout = fdopen(STDOUT_FILENO, "w");
    Require(stdout != nullptr);
    krvfake::FakeLibrary::Instance().RecordTo(
        [&](const std::string& line) { WriteAll(traces[kCalls], (line + "\n").data(), line.size() + 1); });
    BeginAsFreshProcess();
    watch = {true, firstRefused, lastRefused, 0};
    const int status = RunProgram(arguments);
    (void)std::fflush(stdout);
    watch.isOn = false;
    WriteAll(traces[kRequests], &watch.requests, sizeof watch.requests);
    _exit(status);
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// How a process ended that was refused memory by malloc.
struct ProcessRun {
    ProgramRun run;
    bool endedByItself = false;  // rather than by a signal
    size_t requests = 0;         // for memory, including refused ones
};

// Runs the program in a process of its own, on the scripted library with its current script. The library's
// own requests are never refused. Requests count from 1.
ProcessRun RunProcess(const std::vector<std::string>& words, size_t firstRefused, size_t lastRefused) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    const Traces traces = OpenTraces();
    (void)std::fflush(stdout);
    const pid_t child = fork();
    Require(child >= 0);
    if (child == 0) RunAndExit(arguments, traces, firstRefused, lastRefused);

    int end = 0;
    Require(waitpid(child, &end, 0) == child);
    ProcessRun process;
    process.endedByItself = WIFEXITED(end);
    process.run.exitStatus = WIFEXITED(end) ? WEXITSTATUS(end) : -1;
    process.run.output = TakeTrace(traces[kOutput]);
    process.run.errorOutput = TakeTrace(traces[kErrorOutput]);
    process.run.calls = Lines(TakeTrace(traces[kCalls]));
    const std::string requests = TakeTrace(traces[kRequests]);
    if (requests.size() == sizeof process.requests) {
        std::memcpy(&process.requests, requests.data(), sizeof process.requests);
    }
    return process;
}

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

// As out_of_memory_test.cpp, but each run is a process of its own and malloc refuses memory, so that the
// standard library's requests for throwing, sorting and printing are refused too.
class ProcessMemory : public testing::Test {
  protected:
    ProcessMemory() {
        krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
        library.Reset();
        BuildSmallFarm(library.GetFarm());
    }

    static void RefuseEachRequest(bool onlyOnce) {
        size_t points = 0;
        for (const std::vector<std::string>& words : kCommandLines) {
            const ProcessRun whole = RunProcess(words, kNever, kNever);
            ASSERT_GT(whole.requests, 0U);
            for (size_t number = 1; number <= whole.requests; ++number) {
                const ProcessRun process = RunProcess(words, number, onlyOnce ? number : kNever);
                ASSERT_TRUE(process.endedByItself) << CommandLineText(words) << ", request " << number;
                EXPECT_EQ(OutOfMemoryProblem(words, process.run, whole.run), "")
                    << CommandLineText(words) << ", request " << number;
            }
            points += whole.requests;
        }
        std::printf("%zu requests for memory refused\n", points);
    }
};

TEST_F(ProcessMemory, RefusedOnceEndsTheRunOrLeavesOutACell) {
    RefuseEachRequest(true);
}

TEST_F(ProcessMemory, RefusedFromOneRequestOnEndsTheRun) {
    RefuseEachRequest(false);
}

}  // namespace
}  // namespace krvcmd::reliability

void* RefusingMalloc(size_t size) {
    return krvcmd::reliability::Refuses() ? nullptr : RealMalloc(size);
}

void* RefusingCalloc(size_t count, size_t size) {
    return krvcmd::reliability::Refuses() ? nullptr : RealCalloc(count, size);
}

void* RefusingRealloc(void* memory, size_t size) {
    return krvcmd::reliability::Refuses() ? nullptr : RealRealloc(memory, size);
}
