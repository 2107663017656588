// Many processes with one farm, and processes that TerminateProcess ends. A second process is this program
// with a piece of work as its argument; it writes a byte to its standard output behind each call.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/unit/embedded/platform/farm_probe.h"
#include "tests/unit/embedded/platform/farm_work.h"
#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

constexpr int kWentOnForever = 1'000'000;

void Acknowledge() {
    DWORD written = 0;
    (void)WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), "!", 1, &written, nullptr);
}

// "move SEED STEPS" or "write": what the second process does.
int Work(const std::vector<std::string_view>& words) {
    if (words.size() == 3 && words[0] == "move") {
        const auto seed = static_cast<unsigned>(std::stoul(std::string(words[1])));
        return MoveAtRandom(seed, std::stoi(std::string(words[2])), &Acknowledge);
    }
    if (words.size() == 1 && words[0] == "write") return WriteNames(&Acknowledge);
    return 99;
}

std::wstring OwnPath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

// A running program whose standard output is read here.
class Process {
  public:
    Process(const std::wstring& program, const std::wstring& words) {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE writing = nullptr;
        if (CreatePipe(&m_reading, &writing, &inherited, 0) == 0) ADD_FAILURE() << "no pipe";
        (void)SetHandleInformation(m_reading, HANDLE_FLAG_INHERIT, 0);
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = writing;
        start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        if (!Start(program, words, start)) ADD_FAILURE() << "the process does not start: " << GetLastError();
        (void)CloseHandle(writing);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        Terminate();
        (void)Wait();
        (void)CloseHandle(m_reading);
        (void)CloseHandle(m_process.hThread);
        (void)CloseHandle(m_process.hProcess);
    }

    // Waits for a byte of its output; false when it has ended and none is left.
    bool Receive() {
        char byte = 0;
        DWORD count = 0;
        return ReadFile(m_reading, &byte, 1, &count, nullptr) != 0 && count == 1;
    }
    void Terminate() { (void)TerminateProcess(m_process.hProcess, 1); }
    DWORD Wait() {
        DWORD status = STILL_ACTIVE;
        (void)WaitForSingleObject(m_process.hProcess, INFINITE);
        (void)GetExitCodeProcess(m_process.hProcess, &status);
        return status;
    }

  private:
    // On a busy machine wine now and then gives a new process up before it runs; it is asked again then.
    bool Start(const std::wstring& program, const std::wstring& words, STARTUPINFOW& start) {
        for (int attempt = 0; attempt < 5; ++attempt) {
            std::wstring commandLine = L"\"" + program + L"\" " + words;
            if (CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                               nullptr, &start, &m_process) != 0) {
                return true;
            }
            if (GetLastError() != ERROR_INTERNAL_ERROR) return false;
        }
        return false;
    }

    HANDLE m_reading = nullptr;
    PROCESS_INFORMATION m_process{};
};

// A process that does a piece of this program's work.
std::unique_ptr<Process> StartWork(const std::wstring& words) {
    return std::make_unique<Process>(OwnPath(), words);
}

// Receives until so many were received, or all that come when there are fewer.
int ReceiveUpTo(Process& process, int most) {
    int received = 0;
    while (received < most && process.Receive())
        ++received;
    return received;
}

using WindowsProcesses = FarmFixture;

void ExpectSoundFarm() {
    Process check(KRVSIM_PROGRAM, L"check");
    (void)ReceiveUpTo(check, kWentOnForever);
    EXPECT_EQ(check.Wait(), 0U) << "krvsim check finds something";
}

TEST_F(WindowsProcesses, EightThatMoveMediaLoseAndDoubleNone) {
    { const Client first; }
    const std::string before = MediaOf(m_home.LocalFarm());
    std::vector<std::unique_ptr<Process>> movers;
    movers.reserve(8);
    for (unsigned process = 0; process < 8; ++process)
        movers.push_back(StartWork(L"move " + std::to_wstring(process) + L" 50"));
    for (auto& mover : movers) {
        EXPECT_EQ(ReceiveUpTo(*mover, kWentOnForever), 50);
        EXPECT_EQ(mover->Wait(), 0U);
    }
    EXPECT_EQ(MediaOf(m_home.LocalFarm()), before);
    ExpectMediaInTheirPlaces(m_home.LocalFarm());
    ExpectSoundFarm();
}

TEST_F(WindowsProcesses, TerminatedAmongOthersThatMoveMediaLoseAndDoubleNone) {
    { const Client first; }
    const std::string before = MediaOf(m_home.LocalFarm());
    for (unsigned round = 0; round < 5; ++round) {
        const auto survivor = StartWork(L"move " + std::to_wstring(round) + L" 30");
        const auto terminated = StartWork(L"move " + std::to_wstring(100 + round) + L" 1000000");
        EXPECT_EQ(ReceiveUpTo(*terminated, 3 + static_cast<int>(round)), 3 + static_cast<int>(round));
        terminated->Terminate();
        EXPECT_EQ(terminated->Wait(), 1U);
        EXPECT_EQ(ReceiveUpTo(*survivor, kWentOnForever), 30);
        EXPECT_EQ(survivor->Wait(), 0U);
        EXPECT_EQ(MediaOf(m_home.LocalFarm()), before);
        ExpectMediaInTheirPlaces(m_home.LocalFarm());
    }
    ExpectSoundFarm();
}

TEST_F(WindowsProcesses, TerminatedInTheMiddleOfWritesLeaveExactlyTheAcknowledgedOnes) {
    for (const int terminateAfter : {1, 37, 90, 150, 199}) {
        const FarmHome fresh;
        { const Client first; }
        const auto writer = StartWork(L"write");
        int acknowledged = ReceiveUpTo(*writer, terminateAfter);
        EXPECT_EQ(acknowledged, terminateAfter);
        writer->Terminate();
        (void)writer->Wait();
        acknowledged += ReceiveUpTo(*writer, kWentOnForever);  // sent before the end
        ExpectExactlyTheAcknowledgedWrites(acknowledged);
        EXPECT_EQ(ReadText(fresh.LocalFarm(), "PRAGMA integrity_check"), "ok");
        ExpectSoundFarm();
    }
}

TEST_F(WindowsProcesses, SoundFarmIsWhatKrvsimCheckLooksFor) {
    { const Client first; }
    ExpectSoundFarm();
    ChangeFarm(m_home.LocalFarm(), "UPDATE jukebox SET slot_count = slot_count + 1 WHERE id = 29");
    Process check(KRVSIM_PROGRAM, L"check");
    (void)ReceiveUpTo(check, kWentOnForever);
    EXPECT_NE(check.Wait(), 0U);
}

}  // namespace
}  // namespace embedded_test

int main(int argc, char** argv) {
    const std::vector<std::string_view> words(argv + 1, argv + argc);
    if (!words.empty() && !words[0].starts_with("--")) return embedded_test::Work(words);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
