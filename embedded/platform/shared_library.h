// A library that is loaded at run time.
#pragma once

#include <filesystem>
#include <string>

namespace embedded {

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
