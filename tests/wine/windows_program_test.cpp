#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace wine {
namespace {

// Runs the krvcmd.exe beside the scripted library and checks what only a Windows program can see: the whole
// exit status, and bytes of the ANSI code page. Each test has a folder for the script and the record.
class WindowsProgram : public testing::Test {
  protected:
    void SetUp() override {
        const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
        m_folder = std::filesystem::temp_directory_path() /
                   ("krvcmd-" + std::to_string(GetCurrentProcessId()) + "-" + name);
        std::filesystem::create_directories(m_folder);
        SetEnvironmentVariableW(L"KRVFAKE_SCRIPT", (m_folder / "script").c_str());
        SetEnvironmentVariableW(L"KRVFAKE_LOG", (m_folder / "record").c_str());
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    // Starts krvcmd.exe with the command line; its whole exit status.
    DWORD Run(const std::wstring& words, const std::string& script) {
        std::ofstream(m_folder / "script") << script;
        std::wstring commandLine = L"\"" KRVCMD_PROGRAM L"\" quiet " + words;
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        if (CreateProcessW(KRVCMD_PROGRAM, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                           &start, &process) == 0) {
            ADD_FAILURE() << "krvcmd.exe does not start: " << GetLastError();
            return 0;
        }
        DWORD status = 0;
        (void)WaitForSingleObject(process.hProcess, INFINITE);
        (void)GetExitCodeProcess(process.hProcess, &status);
        (void)CloseHandle(process.hProcess);
        (void)CloseHandle(process.hThread);
        return status;
    }

    std::string Record() const {
        std::ostringstream text;
        text << std::ifstream(m_folder / "record").rdbuf();
        return text.str();
    }

  private:
    std::filesystem::path m_folder;
};

using WholeExitStatus = WindowsProgram;

TEST_F(WholeExitStatus, IsTheServiceCodeUncut) {
    for (const int code :
         {1, 22, 255, 256, 257, 501, 512, 1000, 65536, 2147483647, -1, -256, -2147483647 - 1}) {
        const std::string script = "fail KrvServiceStop code=" + std::to_string(code) + "\n";
        EXPECT_EQ(Run(L"service stop", script), static_cast<DWORD>(code));
    }
}

TEST_F(WholeExitStatus, IsTheProgramsOwnCode) {
    EXPECT_EQ(Run(L"service start", ""), 0U);
    EXPECT_EQ(Run(L"query jukeboxes J Tower", ""), 6U);
    EXPECT_EQ(Run(L"query", ""), 22U);
}

using Arguments = WindowsProgram;

TEST_F(Arguments, ArriveInTheAnsiCodePage) {
    EXPECT_EQ(Run(L"name V@33 B\u00FCcher", "volume 33\n"), 0U);
    // Windows-1252, the code page of Western Europe and of wine.
    ASSERT_EQ(GetACP(), 1252U);
    EXPECT_NE(Record().find("KrvVolumeSetAspects V=33 text=\"B\\xFCcher\""), std::string::npos) << Record();
}

TEST_F(Arguments, AreRefusedWithCharactersOutsideOfTheAnsiCodePage) {
    // A Cyrillic letter, which would arrive as a question mark, and A with a macron, which would arrive as A.
    for (const wchar_t* name : {L"\u0416", L"\u0100"}) {
        EXPECT_EQ(Run(std::wstring(L"name V@33 ") + name, "volume 33\n"), 22U);
        EXPECT_EQ(Record().find("KrvVolumeSetAspects"), std::string::npos) << Record();
    }
}

}  // namespace
}  // namespace wine
