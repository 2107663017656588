// Gives a server a farm, all of it or nothing.
#pragma once

#include <functional>
#include <string>

#include "embedded/store/database.h"

namespace embedded::tools {

// What happens to a farm that the server has already.
enum class Existing { Keep, Replace };

// Refuses with Keep a server that has a farm: before a long task, whose end would tell the same.
void RequireRoom(const std::string& server, Existing existing);

// Runs `write` on empty tables. With Keep, a server that has a farm is refused. A file that is no
// farm is refused in any case.
void MakeFarm(const std::string& server, Existing existing, const std::function<void(Database&)>& write);

}  // namespace embedded::tools
