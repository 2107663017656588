#include <dlfcn.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "embedded/platform/child_process.h"
#include "embedded/platform/platform.h"

namespace embedded {
namespace {

constexpr mode_t kOwnerOnlyFolder = 0700;
constexpr mode_t kOwnerOnlyFile = 0600;
constexpr mode_t kGroupFile = 0660;

std::error_code LastError() {
    return {errno, std::generic_category()};
}

std::filesystem::path FromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::filesystem::path() : std::filesystem::path(value);
}

std::filesystem::path HomeFolder() {
    std::filesystem::path home = FromEnvironment("HOME");
    if (!home.empty()) return home;
    const passwd* user = getpwuid(geteuid());
    return user == nullptr || user->pw_dir == nullptr ? std::filesystem::path() : user->pw_dir;
}

bool IsAnythingAt(const std::filesystem::path& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

// A folder with the set-group-ID bit is shared by its group.
bool IsSharedByGroup(const std::filesystem::path& folder) {
    struct stat status {};
    constexpr mode_t kShared = S_ISGID | S_IRGRP | S_IWGRP | S_IXGRP;
    return stat(folder.empty() ? "." : folder.c_str(), &status) == 0 && (status.st_mode & kShared) == kShared;
}

// Opens or creates a file that only its owner may use, or its group too in a folder that the group shares.
// Returns -1 and sets errno if that fails.
int OpenPrivateFile(const std::filesystem::path& file) {
    const bool isShared = IsSharedByGroup(file.parent_path());
    const int descriptor =
        open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, isShared ? kGroupFile : kOwnerOnlyFile);
    struct stat status {};
    // The umask of the process may have taken the group's rights to a new file away.
    const bool isNew = descriptor >= 0 && fstat(descriptor, &status) == 0 && status.st_size == 0;
    if (isShared && isNew && status.st_uid == geteuid()) (void)fchmod(descriptor, kGroupFile);
    return descriptor;
}

// For file systems that can do neither in one step: one process at a time looks and renames.
std::error_code RenameWithTheFolderLocked(const std::filesystem::path& file,
                                          const std::filesystem::path& place) {
    const Descriptor folder(open(place.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Closing the folder unlocks it.
    if (folder.Get() < 0 || flock(folder.Get(), LOCK_EX) != 0) return LastError();
    if (IsAnythingAt(place)) return std::make_error_code(std::errc::file_exists);
    return rename(file.c_str(), place.c_str()) == 0 ? std::error_code() : LastError();
}

}  // namespace

StateFolder FindStateFolder() {
    std::filesystem::path own = FromEnvironment("KRVSIM_HOME");
    if (!own.empty()) return {own, true};
    const std::filesystem::path state = FromEnvironment("XDG_STATE_HOME");
    // A relative path would mean another folder in every working directory: not taken.
    if (state.is_absolute()) return {state / "krvsim"};
    const std::filesystem::path home = HomeFolder();
    return {home.empty() ? home : home / ".local" / "state" / "krvsim"};
}

std::filesystem::path SharedStateFolder() {
    return KRVCMD_STATE_FOLDER;
}

std::string GroupOf(const std::filesystem::path& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return {};
    const group* owner = getgrgid(status.st_gid);
    return owner == nullptr || owner->gr_name == nullptr ? std::to_string(status.st_gid) : owner->gr_name;
}

std::error_code CreatePrivateFolder(const std::filesystem::path& folder) {
    std::filesystem::path made;
    for (const std::filesystem::path& part : folder) {
        made /= part;
        if (mkdir(made.c_str(), kOwnerOnlyFolder) == 0 || errno == EEXIST) continue;
        const std::error_code failure = LastError();
        std::error_code ignored;
        if (!std::filesystem::is_directory(made, ignored)) return failure;
    }
    std::error_code failure;
    if (std::filesystem::is_directory(folder, failure)) return {};
    return failure ? failure : std::make_error_code(std::errc::not_a_directory);
}

std::error_code CreatePrivateFile(const std::filesystem::path& file) {
    const int descriptor = OpenPrivateFile(file);
    if (descriptor < 0) return LastError();
    close(descriptor);
    return {};
}

std::error_code MoveToFreePath(const std::filesystem::path& file, const std::filesystem::path& place) {
    if (link(file.c_str(), place.c_str()) == 0) {
        (void)unlink(file.c_str());
        return {};
    }
    if (errno == EEXIST) return LastError();
        // Not every file system has hard links.
#ifdef RENAME_NOREPLACE
    if (renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, place.c_str(), RENAME_NOREPLACE) == 0) return {};
    if (errno == EEXIST) return LastError();
#endif
    return RenameWithTheFolderLocked(file, place);
}

bool MayRead(const std::filesystem::path& file) {
    return faccessat(AT_FDCWD, file.c_str(), R_OK, AT_EACCESS) == 0;
}

bool MayChange(const std::filesystem::path& file) {
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    return faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) == 0 &&
           faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::string PathText(const std::filesystem::path& path) {
    return path.string();
}

uint32_t ProcessId() {
    return static_cast<uint32_t>(getpid());
}

std::filesystem::path FindClientLibrary() {
    void* library = dlopen("libkrvSdk64.so", RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) return {};
    std::filesystem::path file;
    Dl_info info{};
    if (void* function = dlsym(library, "KrvSessionCreate");
        function != nullptr && dladdr(function, &info) != 0 && info.dli_fname != nullptr) {
        std::error_code ignored;
        file = std::filesystem::weakly_canonical(info.dli_fname, ignored);
    }
    dlclose(library);
    return file;
}

std::filesystem::path OwnFile() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&OwnFile), &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code ignored;
    return std::filesystem::weakly_canonical(info.dli_fname, ignored);
}

FileLock::FileLock(const std::filesystem::path& file) : m_file(OpenPrivateFile(file)) {
    if (m_file < 0) throw std::system_error(LastError());
}

FileLock::~FileLock() {
    close(static_cast<int>(m_file));
}

bool FileLock::Try() {
    if (flock(static_cast<int>(m_file), LOCK_EX | LOCK_NB) == 0) return true;
    if (errno == EWOULDBLOCK || errno == EINTR) return false;
    throw std::system_error(LastError());
}

SharedLibrary::SharedLibrary(const std::filesystem::path& file) {
    // A name without a folder would be looked for in the system's folders, not in this one.
    const std::filesystem::path path = file.has_parent_path() ? file : "." / file;
    m_handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_handle == nullptr) throw std::runtime_error(dlerror());
}

SharedLibrary::~SharedLibrary() {
    dlclose(m_handle);
}

SharedLibrary::Address SharedLibrary::FindAddress(const char* name) const {
    return reinterpret_cast<Address>(dlsym(m_handle, name));
}

}  // namespace embedded
