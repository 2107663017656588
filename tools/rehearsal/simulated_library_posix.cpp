#include <fstream>
#include <string>

#include "embedded/platform/platform.h"
#include "tools/common/streams.h"
#include "tools/rehearsal/process.h"
#include "tools/rehearsal/simulated_library.h"

namespace embedded::tools {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLibraries[] = {"../lib/libkrvSdk64.so", "../" KRVSIM_LIBRARY_FOLDER "/libkrvSdk64.so"};

// The simulated library names the variable that chooses its folder; that of a real service does not.
bool IsSimulated(const fs::path& file) {
    std::error_code failure;
    const auto size = fs::file_size(file, failure);
    if (failure) return false;
    std::string bytes(static_cast<size_t>(size), '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes.find("KRVSIM_HOME") != std::string::npos;
}

}  // namespace

fs::path FindSimulatedLibrary() {
    const fs::path folder = OwnProgram().parent_path();
    std::error_code failure;
    for (const char* name : kLibraries) {
        fs::path file = fs::canonical(folder / name, failure);
        if (!failure && IsSimulated(file)) return file;
    }
    fs::path found = FindClientLibrary();
    if (!found.empty() && IsSimulated(found)) return found;
    throw ToolFailure("the simulated client library is not beside this program");
}

std::error_code PutLibrary(const fs::path& library, const fs::path& path) {
    std::error_code failure;
    fs::create_symlink(library, path, failure);
    return failure;
}

}  // namespace embedded::tools
