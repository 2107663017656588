#include <windows.h>

// The rest needs what windows.h declares.
#include <sddl.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "embedded/platform/platform.h"

namespace embedded {
namespace {

struct CloseWindowsHandle {
    void operator()(HANDLE handle) const { (void)CloseHandle(handle); }
};
using WindowsHandle = std::unique_ptr<void, CloseWindowsHandle>;

struct FreeLocalMemory {
    void operator()(void* memory) const { (void)LocalFree(memory); }
};
template <class Type>
using LocalMemory = std::unique_ptr<Type, FreeLocalMemory>;

std::error_code LastError() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

std::filesystem::path FromEnvironment(const wchar_t* name) {
    const wchar_t* value = _wgetenv(name);
    return value == nullptr ? std::filesystem::path() : std::filesystem::path(value);
}

// The identity of the user that this process runs as, in the notation of security descriptors; empty
// when the system does not tell.
std::wstring UserIdentity() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return {};
    const WindowsHandle closeAtTheEnd(token);
    DWORD size = 0;
    (void)GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<std::byte> buffer(size);
    if (GetTokenInformation(token, TokenUser, buffer.data(), size, &size) == 0) return {};
    wchar_t* text = nullptr;
    if (ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(buffer.data())->User.Sid, &text) == 0) {
        return {};
    }
    const LocalMemory<wchar_t> freeAtTheEnd(text);
    return text;
}

// Grants everything to this user and to nobody else, also for what is made inside a folder.
class OwnerOnly {
  public:
    OwnerOnly() {
        const std::wstring user = UserIdentity();
        if (user.empty()) return;
        const std::wstring rights = L"D:P(A;OICI;FA;;;" + user + L")";
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        if (ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &descriptor,
                                                                 nullptr) == 0) {
            return;
        }
        m_descriptor.reset(descriptor);
        m_attributes.lpSecurityDescriptor = descriptor;
    }

    // Null when this user's identity could not be found out; the folder above then decides.
    SECURITY_ATTRIBUTES* Attributes() { return m_descriptor == nullptr ? nullptr : &m_attributes; }

  private:
    LocalMemory<void> m_descriptor;
    SECURITY_ATTRIBUTES m_attributes{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

std::error_code OpenFor(const std::filesystem::path& file, DWORD disposition,
                        SECURITY_ATTRIBUTES* attributes) {
    const HANDLE handle =
        ::CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                      attributes, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return LastError();
    (void)CloseHandle(handle);
    return {};
}

}  // namespace

StateFolder FindStateFolder() {
    std::filesystem::path own = FromEnvironment(L"KRVSIM_HOME");
    if (!own.empty()) return {own, true};
    const std::filesystem::path local = FromEnvironment(L"LOCALAPPDATA");
    return {local.empty() ? local : local / "krvsim"};
}

std::filesystem::path SharedStateFolder() {
    return {};
}

std::string GroupOf(const std::filesystem::path& /*file*/) {
    return {};
}

std::error_code CreatePrivateFolder(const std::filesystem::path& folder) {
    OwnerOnly ownerOnly;
    std::filesystem::path made = folder.root_path();  // "C:\\" is not a folder to make
    for (const std::filesystem::path& part : folder.relative_path()) {
        made /= part;
        std::error_code ignored;
        if (std::filesystem::is_directory(made, ignored)) continue;
        if (CreateDirectoryW(made.c_str(), ownerOnly.Attributes()) != 0) continue;
        const std::error_code failure = LastError();
        if (!std::filesystem::is_directory(made, ignored)) return failure;  // else another process was faster
    }
    std::error_code failure;
    if (std::filesystem::is_directory(folder, failure)) return {};
    return failure ? failure : std::make_error_code(std::errc::not_a_directory);
}

std::error_code CreatePrivateFile(const std::filesystem::path& file) {
    OwnerOnly ownerOnly;
    return OpenFor(file, OPEN_ALWAYS, ownerOnly.Attributes());
}

std::error_code MoveToFreePath(const std::filesystem::path& file, const std::filesystem::path& place) {
    if (MoveFileExW(file.c_str(), place.c_str(), 0) != 0) return {};
    const DWORD failure = GetLastError();
    if (failure == ERROR_ALREADY_EXISTS || failure == ERROR_FILE_EXISTS)
        return std::make_error_code(std::errc::file_exists);
    return {static_cast<int>(failure), std::system_category()};
}

bool MayRead(const std::filesystem::path& file) {
    return GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool MayChange(const std::filesystem::path& file) {
    return !OpenFor(file, OPEN_EXISTING, nullptr);
}

std::string PathText(const std::filesystem::path& path) {
    const std::wstring& wide = path.native();
    const auto wideSize = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), wideSize, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(size), '\0');
    (void)WideCharToMultiByte(CP_ACP, 0, wide.data(), wideSize, text.data(), size, nullptr, nullptr);
    return text;
}

uint32_t ProcessId() {
    return GetCurrentProcessId();
}

std::filesystem::path FindClientLibrary() {
    const HMODULE library = LoadLibraryW(L"krvSdk64.dll");
    if (library == nullptr) return {};
    constexpr size_t kLongestPath = 32768;
    std::wstring file(kLongestPath, L'\0');
    file.resize(GetModuleFileNameW(library, file.data(), static_cast<DWORD>(file.size())));
    FreeLibrary(library);
    return file;
}

std::filesystem::path OwnFile() {
    HMODULE self = nullptr;
    constexpr DWORD kFlags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExW(kFlags, reinterpret_cast<const wchar_t*>(&OwnFile), &self) == 0) return {};
    std::wstring path(32'768, L'\0');
    path.resize(GetModuleFileNameW(self, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

FileLock::FileLock(const std::filesystem::path& file)
    : m_file(reinterpret_cast<std::intptr_t>(CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE,
                                                         FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                         OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr))) {
    if (m_file == -1) throw std::system_error(LastError());
}

FileLock::~FileLock() {
    (void)CloseHandle(reinterpret_cast<HANDLE>(m_file));
}

bool FileLock::Try() {
    OVERLAPPED whole{};
    const DWORD flags = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
    if (LockFileEx(reinterpret_cast<HANDLE>(m_file), flags, 0, 1, 0, &whole) != 0) return true;
    if (GetLastError() == ERROR_LOCK_VIOLATION) return false;
    throw std::system_error(LastError());
}

SharedLibrary::SharedLibrary(const std::filesystem::path& file) {
    m_handle = LoadLibraryW(std::filesystem::absolute(file).c_str());
    if (m_handle != nullptr) return;
    const std::error_code reason = LastError();
    throw std::runtime_error(PathText(file) + ": " + reason.message());
}

SharedLibrary::~SharedLibrary() {
    FreeLibrary(static_cast<HMODULE>(m_handle));
}

SharedLibrary::Address SharedLibrary::FindAddress(const char* name) const {
    return reinterpret_cast<Address>(GetProcAddress(static_cast<HMODULE>(m_handle), name));
}

}  // namespace embedded
