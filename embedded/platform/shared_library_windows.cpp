#include <windows.h>

#include <stdexcept>
#include <system_error>

#include "embedded/platform/shared_library.h"

namespace embedded {

SharedLibrary::SharedLibrary(const std::filesystem::path& file) {
    m_handle = LoadLibraryW(std::filesystem::absolute(file).c_str());
    if (m_handle != nullptr) return;
    const std::error_code reason(static_cast<int>(GetLastError()), std::system_category());
    throw std::runtime_error(file.string() + ": " + reason.message());
}

SharedLibrary::~SharedLibrary() {
    FreeLibrary(static_cast<HMODULE>(m_handle));
}

SharedLibrary::Address SharedLibrary::FindAddress(const char* name) const {
    return reinterpret_cast<Address>(GetProcAddress(static_cast<HMODULE>(m_handle), name));
}

}  // namespace embedded
