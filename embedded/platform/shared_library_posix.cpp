#include <dlfcn.h>

#include <stdexcept>

#include "embedded/platform/shared_library.h"

namespace embedded {

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
