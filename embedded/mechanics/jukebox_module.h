#pragma once

#include <string>

#include "embedded/jukebox/physical_jukebox.h"

namespace embedded {

// Opens real jukeboxes by means of a shared library beside this one, which is loaded at the first one. Throws
// a Refusal when it is missing, or when the system is not Linux.
JukeboxOpener ModuleOpener(const std::string& server);

// What the module exports: makes a PhysicalJukebox and passes it on. Throws Refusals. Module and client
// library are made together and share their C++ interface.
using OpenJukeboxFunction = PhysicalJukebox*(const JukeboxAddress& address);
inline constexpr const char* kOpenJukeboxFunction = "KrvOpenJukebox";

}  // namespace embedded
