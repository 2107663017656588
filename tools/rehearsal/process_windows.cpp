#include "tools/rehearsal/process.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <memory>
#include <optional>
#include <system_error>

#include "tools/common/streams.h"
#include "tools/rehearsal/output_tee_windows.h"

namespace embedded::tools {
namespace {

struct CloseProcessHandle {
    void operator()(HANDLE handle) const { (void)CloseHandle(handle); }
};
using ProcessHandle = std::unique_ptr<void, CloseProcessHandle>;

// The word as the C runtime of the program reads it from its command line.
std::wstring QuotedWord(const std::wstring& word) {
    if (!word.empty() && word.find_first_of(L" \t\"") == std::wstring::npos) return word;
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (const wchar_t character : word) {
        if (character == L'\\') {
            ++backslashes;
            continue;
        }
        quoted.append(character == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += character;
    }
    return quoted.append(backslashes * 2, L'\\') + L'"';
}

std::wstring CommandLineOf(const std::vector<std::string>& words) {
    std::wstring line;
    for (const std::string& word : words)
        line += (line.empty() ? L"" : L" ") + QuotedWord(std::filesystem::path(word).wstring());
    return line;
}

// The variables of this process with the changes, as CreateProcess takes them.
std::wstring EnvironmentOf(const ProcessRequest& request) {
    std::wstring block;
    wchar_t* const all = GetEnvironmentStringsW();
    for (const wchar_t* entry = all; *entry != L'\0'; entry += std::wcslen(entry) + 1) {
        const std::wstring text = entry;
        const std::wstring name = text.substr(0, text.find(L'=', 1));
        const bool isChanged = std::ranges::any_of(request.environment, [&](const auto& variable) {
            return CompareStringOrdinal(std::filesystem::path(variable.first).c_str(), -1, name.c_str(), -1,
                                        TRUE) == CSTR_EQUAL;
        });
        if (!isChanged) block += text + L'\0';
    }
    FreeEnvironmentStringsW(all);
    for (const auto& [name, value] : request.environment)
        block +=
            std::filesystem::path(name).wstring() + L"=" + std::filesystem::path(value).wstring() + L'\0';
    return block + L'\0';
}

// Ctrl-C reaches the command itself, too.
BOOL WINAPI KeepRunning(DWORD /*event*/) {
    return TRUE;
}

ProcessHandle OpenOutput(const std::filesystem::path& file) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return ProcessHandle(CreateFileW(file.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// The standard streams of this process, but for those that the tee replaces.
void DirectOutput(STARTUPINFOW& start, const OutputTee& tee) {
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdOutput = tee.GetHandle(STD_OUTPUT_HANDLE);
    start.hStdError = tee.GetHandle(STD_ERROR_HANDLE);
    for (const HANDLE handle : {start.hStdInput, start.hStdOutput, start.hStdError})
        (void)SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

}  // namespace

int RunProcess(const ProcessRequest& request) {
    std::wstring line = CommandLineOf(request.words);
    std::wstring environment = EnvironmentOf(request);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    ProcessHandle output;
    if (!request.output.empty()) {
        output = OpenOutput(request.output);
        if (output.get() == INVALID_HANDLE_VALUE) throw ToolFailure("the output cannot be written to a file");
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = output.get();
        start.hStdError = output.get();
    }
    std::optional<OutputTee> tee;
    if (request.output.empty() && request.record != nullptr) {
        tee.emplace(*request.record);
        DirectOutput(start, *tee);
    }
    PROCESS_INFORMATION started{};
    const BOOL isStarted =
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT,
                       environment.data(), nullptr, &start, &started);
    if (isStarted == 0) {
        throw ToolFailure(request.words.front() + ": " +
                          std::system_category().message(static_cast<int>(GetLastError())));
    }
    const ProcessHandle process(started.hProcess);
    const ProcessHandle thread(started.hThread);
    if (tee.has_value()) tee->Start();
    (void)SetConsoleCtrlHandler(&KeepRunning, TRUE);
    (void)WaitForSingleObject(process.get(), INFINITE);
    (void)SetConsoleCtrlHandler(&KeepRunning, FALSE);
    if (tee.has_value()) tee->Finish();
    DWORD status = 0;
    (void)GetExitCodeProcess(process.get(), &status);
    return static_cast<int>(status);
}

std::filesystem::path FindProgram(const std::string& word) {
    std::array<wchar_t, 32768> found{};
    const std::wstring name = std::filesystem::path(word).wstring();
    const DWORD length =
        SearchPathW(nullptr, name.c_str(), L".exe", static_cast<DWORD>(found.size()), found.data(), nullptr);
    return length == 0 || length >= found.size() ? std::filesystem::path()
                                                 : std::filesystem::path(found.data());
}

std::filesystem::path OwnProgram() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return {std::wstring(path.data(), length)};
}

}  // namespace embedded::tools
