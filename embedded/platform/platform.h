#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

namespace embedded {

// What differs between the platforms, and nothing else.

// The folder of the farm databases: $KRVSIM_HOME, else the user's state folder of this platform.
// Empty when the environment names none. Nothing is created.
std::filesystem::path StateFolder();

// Creates the folder and the missing ones above it, readable by this user alone. An existing folder is left
// as it is.
std::error_code CreatePrivateFolder(const std::filesystem::path& folder);

// Creates an empty file that this user alone can read and write; an existing one is left as it is.
std::error_code CreatePrivateFile(const std::filesystem::path& file);

// Whether this process may change the file and make others beside it, as a database needs to.
bool MayChange(const std::filesystem::path& file);

// The path as texts show it: on Windows in the ANSI code page, with "?" for what is outside of it.
std::string PathText(const std::filesystem::path& path);

uint32_t ProcessId();

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
