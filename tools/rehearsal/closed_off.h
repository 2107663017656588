#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/rehearsal/process.h"

namespace embedded::tools {

// The parts of a rehearsal that stand in for what the command would find.
struct StandIns {
    std::filesystem::path library;   // the simulated client library, a file
    std::filesystem::path farms;     // the folder of the copy
    std::filesystem::path programs;  // an empty folder for what is made here
};

// What lies over the programs, libraries and folders that the command might find: on the PATH and in the
// system's folders, beside this program, by LD_LIBRARY_PATH, and at the absolute paths that the command or
// its script names. Makes the stand-ins for krvcmd and krvsim, which set their environment whatever the
// command has made of it. Empty on Windows.
std::vector<Overlay> FindOverlays(const StandIns& standIns, const std::vector<std::string>& words);

// Variables that lead the command to the copy.
std::map<std::string, std::string> EnvironmentFor(const StandIns& standIns);

// For a command that is not closed off: stand-ins that come first on the PATH. They refuse to run krvcmd
// where LD_LIBRARY_PATH leads to another client library, and note that library. Does nothing on Windows.
void AddProgramsOnPath(const StandIns& standIns, std::map<std::string, std::string>& environment);

// The other libraries that were noted, one a line.
std::filesystem::path OtherLibrariesFile(const StandIns& standIns);

}  // namespace embedded::tools
