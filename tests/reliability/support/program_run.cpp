#include "tests/reliability/support/program_run.h"

#include <sys/mman.h>
#include <unistd.h>
#include <cstdlib>
#include <limits>

#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/frontend/driver/driver.h"
#include "krvcmd/frontend/report/result_line.h"
#include "krvcmd/service/access/session.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "tests/fake_library/fake_library.h"

namespace krvcmd {
namespace {

constexpr size_t kNever = std::numeric_limits<size_t>::max();

size_t checksLeft = kNever;

}  // namespace

// Replacements for the program's own functions.

void InstallInterruptHandler() {}

bool InterruptRequested() {
    if (checksLeft == kNever) return false;
    if (checksLeft > 0) --checksLeft;
    return checksLeft == 0;
}

LibraryCallScope::LibraryCallScope(LibraryCall) {}
LibraryCallScope::~LibraryCallScope() = default;

namespace reliability {
namespace {

void Require(bool done) {
    if (!done) std::abort();
}

}  // namespace

CapturedStream::CapturedStream(std::FILE* stream)
    : m_stream(stream), m_file(memfd_create("captured", MFD_CLOEXEC)) {
    Require(m_file >= 0);
}

CapturedStream::~CapturedStream() {
    (void)close(m_file);
}

void CapturedStream::Begin() {
    const int descriptor = fileno(m_stream);
    Require(std::fflush(m_stream) == 0);
    m_saved = dup(descriptor);
    Require(m_saved >= 0 && dup2(m_file, descriptor) == descriptor);
}

std::string CapturedStream::End() {
    const int descriptor = fileno(m_stream);
    Require(std::fflush(m_stream) == 0);
    Require(dup2(m_saved, descriptor) == descriptor && close(m_saved) == 0);
    const off_t length = lseek(m_file, 0, SEEK_END);
    Require(length >= 0);
    std::string text(static_cast<size_t>(length), '\0');
    Require(pread(m_file, text.data(), text.size(), 0) == length);
    Require(ftruncate(m_file, 0) == 0 && lseek(m_file, 0, SEEK_SET) == 0);
    return text;
}

void BeginAsFreshProcess() {
    GetBannerFlags() = {};
    GetSession() = 0;
    GetProgramNames() = {};
}

ProgramRun ProgramRunner::Run(const std::vector<std::string>& words) {
    return Run(words, RunProgram);
}

ProgramRun ProgramRunner::Run(const std::vector<std::string>& words, const Main& main) {
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words)
        arguments.push_back(word.c_str());

    krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
    library.ForgetCalls();
    BeginAsFreshProcess();
    ProgramRun run;
    m_output.Begin();
    m_errorOutput.Begin();
    run.exitStatus = main(arguments);
    run.output = m_output.End();
    run.errorOutput = m_errorOutput.End();
    run.calls = library.Calls();
    return run;
}

void InterruptAfterChecks(size_t count) {
    checksLeft = count;
}

void CancelInterrupt() {
    checksLeft = kNever;
}

}  // namespace reliability
}  // namespace krvcmd
