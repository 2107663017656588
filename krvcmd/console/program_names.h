#pragma once

#include <string>

namespace krvcmd {

// The two program-wide names that printed texts refer to as "[CmdLine]" and "[ProductName]".
// The driver sets them at start; console writers copy them when they are constructed.
struct ProgramNames {
    std::string commandName;
    std::string productName;
};

ProgramNames& GetProgramNames();

}  // namespace krvcmd
