#pragma once

#include <functional>
#include <string>

#include "embedded/store/database.h"
#include "tools/common/command_line.h"

namespace embedded::tools {

// What happens to a farm that the server already has.
enum class Existing { Keep, Replace };

// The option --force: replace an existing farm.
void AddForceOption(CLI::App& command, Existing& existing);

// Makes the folder of the farms and throws ToolFailure when the server has a farm that is to be kept: before
// a long task that would end so.
void RequireRoom(const std::string& server, Existing existing);

// Makes the farm of a server: `write` fills empty tables. All of it is kept or, after a failure or an
// interruption, nothing. Throws ToolFailure when the server has a farm that is to be kept; a file that is not
// a farm is never replaced.
void MakeFarm(const std::string& server, Existing existing, const std::function<void(Database&)>& write);

}  // namespace embedded::tools
