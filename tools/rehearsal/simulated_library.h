#pragma once

#include <filesystem>
#include <system_error>

namespace embedded::tools {

// The simulated client library that ships with this program; throws ToolFailure when it is not there.
std::filesystem::path FindSimulatedLibrary();

// Makes the library available at another path.
std::error_code PutLibrary(const std::filesystem::path& library, const std::filesystem::path& path);

}  // namespace embedded::tools
