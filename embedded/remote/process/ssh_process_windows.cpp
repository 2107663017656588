#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "embedded/remote/process/ssh_process.h"

namespace embedded::remote {
namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kMostErrorText = 4096;
// More than all requests that wait for an answer at a time.
constexpr DWORD kPipeSize = 1U << 20U;
constexpr DWORD kPause = 1;  // milliseconds

[[noreturn]] void ThrowLastError() {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

class Handle {
  public:
    Handle() = default;
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { Close(); }

    HANDLE Get() const { return m_handle; }
    void Close() {
        if (m_handle != nullptr) (void)CloseHandle(m_handle);
        m_handle = nullptr;
    }

  private:
    HANDLE m_handle = nullptr;
};

struct Pipe {
    Handle reading;
    Handle writing;
};

// `inherited` is the end that ssh gets.
Pipe MakePipe(Handle Pipe::*inherited) {
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    if (CreatePipe(&reading, &writing, nullptr, kPipeSize) == 0) ThrowLastError();
    Pipe pipe{Handle(reading), Handle(writing)};
    if (SetHandleInformation((pipe.*inherited).Get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) == 0)
        ThrowLastError();
    return pipe;
}

// On the PATH, but never in the working directory; else where Windows has its own.
std::filesystem::path FindSsh() {
    const wchar_t* path = _wgetenv(L"PATH");
    std::wstring rest = path == nullptr ? L"" : path;
    if (const wchar_t* root = _wgetenv(L"SystemRoot"))
        rest += std::wstring(L";") + root + L"\\System32\\OpenSSH";
    while (!rest.empty()) {
        const size_t end = std::min(rest.find(L';'), rest.size());
        const std::filesystem::path folder = rest.substr(0, end);
        rest.erase(0, end + 1);
        std::error_code ignored;
        if (folder.is_absolute() && std::filesystem::is_regular_file(folder / "ssh.exe", ignored))
            return folder / "ssh.exe";
    }
    throw std::system_error(ERROR_FILE_NOT_FOUND, std::system_category());
}

// The words have only letters, digits and marks that need no quotes.
std::wstring CommandLine(const std::vector<std::string>& arguments) {
    std::wstring line = L"ssh";
    for (const std::string& word : arguments) {
        if (word.find_first_of(" \t\"\\") != std::string::npos)
            throw std::system_error(ERROR_INVALID_PARAMETER, std::system_category());
        line += L' ';
        line.append(word.begin(), word.end());
    }
    return line;
}

// ssh gets these handles and no others.
class HandleList {
  public:
    explicit HandleList(std::array<HANDLE, 3> handles) : m_handles(handles) {
        SIZE_T size = 0;
        (void)InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        m_memory.resize(size);
        m_list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_memory.data());
        if (InitializeProcThreadAttributeList(m_list, 1, 0, &size) == 0) ThrowLastError();
        if (UpdateProcThreadAttribute(m_list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_handles.data(),
                                      sizeof(m_handles), nullptr, nullptr) == 0) {
            DeleteProcThreadAttributeList(m_list);
            ThrowLastError();
        }
    }
    HandleList(const HandleList&) = delete;
    HandleList& operator=(const HandleList&) = delete;
    ~HandleList() { DeleteProcThreadAttributeList(m_list); }

    LPPROC_THREAD_ATTRIBUTE_LIST Get() const { return m_list; }

  private:
    std::array<HANDLE, 3> m_handles;
    std::vector<std::byte> m_memory;
    LPPROC_THREAD_ATTRIBUTE_LIST m_list = nullptr;
};

Handle Start(const std::vector<std::string>& arguments, HANDLE input, HANDLE output, HANDLE errors) {
    const HandleList handles({input, output, errors});
    STARTUPINFOEXW settings{};
    settings.StartupInfo.cb = sizeof(settings);
    settings.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    settings.StartupInfo.hStdInput = input;
    settings.StartupInfo.hStdOutput = output;
    settings.StartupInfo.hStdError = errors;
    settings.lpAttributeList = handles.Get();
    std::wstring line = CommandLine(arguments);
    const std::filesystem::path program = FindSsh();
    PROCESS_INFORMATION process{};
    // Without a console: Ctrl-C does not reach ssh, and ssh cannot ask anything.
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                       EXTENDED_STARTUPINFO_PRESENT | CREATE_NO_WINDOW | CREATE_NEW_PROCESS_GROUP, nullptr,
                       nullptr, &settings.StartupInfo, &process) == 0) {
        ThrowLastError();
    }
    (void)CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

// Appends what the pipe holds at present.
Transfer TakeFrom(HANDLE pipe, std::string& bytes) {
    DWORD available = 0;
    if (PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) == 0) return Transfer::Ended;
    if (available == 0) return Transfer::TimedOut;
    const size_t before = bytes.size();
    bytes.resize(before + available);
    DWORD count = 0;
    const bool isRead = ReadFile(pipe, bytes.data() + before, available, &count, nullptr) != 0;
    bytes.resize(before + count);
    return isRead && count > 0 ? Transfer::Done : Transfer::Ended;
}

}  // namespace

struct SshProcess::Handles {
    Handle input;
    Handle output;
    Handle errors;
    Handle process;
    std::string errorText;

    void ReadErrors() {
        (void)TakeFrom(errors.Get(), errorText);
        if (errorText.size() > kMostErrorText) errorText.erase(0, errorText.size() - kMostErrorText);
    }
};

SshProcess::SshProcess(const std::vector<std::string>& arguments) : m_handles(std::make_unique<Handles>()) {
    Pipe input = MakePipe(&Pipe::reading);
    Pipe output = MakePipe(&Pipe::writing);
    Pipe errors = MakePipe(&Pipe::writing);
    DWORD mode = PIPE_READMODE_BYTE | PIPE_NOWAIT;
    (void)SetNamedPipeHandleState(input.writing.Get(), &mode, nullptr, nullptr);
    m_handles->process = Start(arguments, input.reading.Get(), output.writing.Get(), errors.writing.Get());
    m_handles->input = std::move(input.writing);
    m_handles->output = std::move(output.reading);
    m_handles->errors = std::move(errors.reading);
}

SshProcess::~SshProcess() {
    if (m_handles->process.Get() != nullptr) (void)Finish(std::chrono::milliseconds(0));
}

Transfer SshProcess::Send(std::string_view bytes, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    while (!bytes.empty()) {
        DWORD count = 0;
        if (WriteFile(m_handles->input.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                      nullptr) == 0) {
            return Transfer::Ended;
        }
        bytes.remove_prefix(count);
        if (bytes.empty()) break;
        if (Clock::now() >= deadline) return Transfer::TimedOut;
        m_handles->ReadErrors();
        Sleep(kPause);
    }
    return Transfer::Done;
}

Transfer SshProcess::Receive(std::string& bytes, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    while (true) {
        const Transfer result = TakeFrom(m_handles->output.Get(), bytes);
        if (result != Transfer::TimedOut || Clock::now() >= deadline) return result;
        m_handles->ReadErrors();
        Sleep(kPause);
    }
}

void SshProcess::CloseInput() {
    m_handles->input.Close();
}

SshEnd SshProcess::Finish(std::chrono::milliseconds patience) {
    CloseInput();
    DWORD status = 0;
    if (WaitForSingleObject(m_handles->process.Get(), static_cast<DWORD>(patience.count())) !=
        WAIT_OBJECT_0) {
        constexpr DWORD kLastWait = 1000;
        (void)TerminateProcess(m_handles->process.Get(), 1);
        (void)WaitForSingleObject(m_handles->process.Get(), kLastWait);
        status = static_cast<DWORD>(-1);
    } else if (GetExitCodeProcess(m_handles->process.Get(), &status) == 0) {
        status = static_cast<DWORD>(-1);
    }
    m_handles->ReadErrors();
    m_handles->output.Close();
    m_handles->errors.Close();
    m_handles->process.Close();
    return {static_cast<int>(status), m_handles->errorText};
}

}  // namespace embedded::remote
