// What differs between the platforms, and nothing else: where a user's state lives, how a
// folder and a file are kept private to that user, and who this process is.
#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace embedded {

// The folder of the farm databases: $KRVSIM_HOME, else the user's state folder of this platform.
// Empty when the environment names none. Nothing is created.
std::filesystem::path StateFolder();

// Creates the folder and what is missing above it, readable by this user alone. A folder that
// exists is left as it is.
std::error_code CreatePrivateFolder(const std::filesystem::path& folder);

// Creates an empty file that this user alone can read and write; one that exists is left as it is.
std::error_code CreatePrivateFile(const std::filesystem::path& file);

// Whether this process may change the file and make others beside it, as a database needs to.
bool MayChange(const std::filesystem::path& file);

uint32_t ProcessId();

}  // namespace embedded
