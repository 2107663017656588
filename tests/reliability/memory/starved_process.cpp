#include "tests/reliability/memory/starved_process.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "krvcmd/frontend/driver/driver.h"
#include "tests/fake_library/fake_library.h"

// The C library's own functions, by the names that it keeps for those who replace the usual ones.
extern "C" {
void* RealMalloc(size_t size) asm("__libc_malloc");
void* RealCalloc(size_t count, size_t size) asm("__libc_calloc");
void* RealRealloc(void* memory, size_t size) asm("__libc_realloc");

// What takes the place of the usual ones: all of the process's memory comes through these.
void* GrudgingMalloc(size_t size) asm("malloc");
void* GrudgingCalloc(size_t count, size_t size) asm("calloc");
void* GrudgingRealloc(void* memory, size_t size) asm("realloc");
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

// What the process leaves behind, each in a file in memory.
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

// The whole life of the process; it ends as a program ends.
[[noreturn]] void LiveStarved(const std::vector<const char*>& arguments, const Traces& traces,
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

}  // namespace

StarvedRun RunStarved(const std::vector<std::string>& words, size_t firstRefused, size_t lastRefused) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    const Traces traces = OpenTraces();
    (void)std::fflush(stdout);
    const pid_t process = fork();
    Require(process >= 0);
    if (process == 0) LiveStarved(arguments, traces, firstRefused, lastRefused);

    int end = 0;
    Require(waitpid(process, &end, 0) == process);
    StarvedRun starved;
    starved.endedByItself = WIFEXITED(end);
    starved.run.exitStatus = WIFEXITED(end) ? WEXITSTATUS(end) : -1;
    starved.run.output = TakeTrace(traces[kOutput]);
    starved.run.errorOutput = TakeTrace(traces[kErrorOutput]);
    starved.run.calls = Lines(TakeTrace(traces[kCalls]));
    const std::string requests = TakeTrace(traces[kRequests]);
    if (requests.size() == sizeof starved.requests) {
        std::memcpy(&starved.requests, requests.data(), sizeof starved.requests);
    }
    return starved;
}

}  // namespace krvcmd::reliability

void* GrudgingMalloc(size_t size) {
    return krvcmd::reliability::Refuses() ? nullptr : RealMalloc(size);
}

void* GrudgingCalloc(size_t count, size_t size) {
    return krvcmd::reliability::Refuses() ? nullptr : RealCalloc(count, size);
}

void* GrudgingRealloc(void* memory, size_t size) {
    return krvcmd::reliability::Refuses() ? nullptr : RealRealloc(memory, size);
}
