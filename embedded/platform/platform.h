#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

namespace embedded {

// What differs between the platforms, and nothing else.

// The folder of the farm databases. Its path is empty when the environment names none.
struct StateFolder {
    std::filesystem::path path;
    bool isChosen = false;  // $KRVSIM_HOME names it; else it is the user's state folder of this platform
};

// Nothing is created, and whatever $KRVSIM_HOME says is returned as it is.
StateFolder FindStateFolder();

// The folder for the farms of real jukeboxes that the administrators of this machine share, whether or not it
// is there; chosen when the project is configured. Empty on Windows.
std::filesystem::path SharedStateFolder();

// The name of the group that a file or folder belongs to, its number when it has no name; empty on Windows
// and when there is no such file.
std::string GroupOf(const std::filesystem::path& file);

// Creates the folder and the missing ones above it, readable by this user alone. An existing folder is left
// as it is.
std::error_code CreatePrivateFolder(const std::filesystem::path& folder);

// Creates an empty file that this user alone can read and write, or also the group of a folder that has the
// set-group-ID bit and that the group may write to (not on Windows). An existing file is left as it is.
std::error_code CreatePrivateFile(const std::filesystem::path& file);

// Gives the file a new path in the same folder. std::errc::file_exists when anything has that path already,
// even a link that leads nowhere or a file that another process has put there meanwhile: it stays.
std::error_code MoveToFreePath(const std::filesystem::path& file, const std::filesystem::path& place);

bool MayRead(const std::filesystem::path& file);

// Whether this process may change the file and make others beside it, as a database needs to.
bool MayChange(const std::filesystem::path& file);

// The path as texts show it: on Windows in the ANSI code page, with "?" for what is outside of it.
std::string PathText(const std::filesystem::path& path);

uint32_t ProcessId();

// The client library that the system loads for a program beside this one; empty when it finds none.
std::filesystem::path FindClientLibrary();

// The file that this code was loaded from: the client library, or a program that contains it.
std::filesystem::path OwnFile();

// A lock that processes take one after the other. It ends with the object, and with the process.
class FileLock {
  public:
    // Creates the file where it is missing, as CreatePrivateFile does. Throws std::system_error.
    explicit FileLock(const std::filesystem::path& file);
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

    // Whether the lock is this object's now. Throws std::system_error when the file cannot be locked at all.
    bool Try();

  private:
    std::intptr_t m_file = -1;
};

// A library that is loaded at run time.
class SharedLibrary {
  public:
    // Throws std::runtime_error with the system's reason when the library cannot be loaded.
    explicit SharedLibrary(const std::filesystem::path& file);
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary();

    // Null when the library has no function of this name.
    template <typename Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(FindAddress(name));
    }

  private:
    using Address = void (*)();
    Address FindAddress(const char* name) const;

    void* m_handle = nullptr;
};

}  // namespace embedded
