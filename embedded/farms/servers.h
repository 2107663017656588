// The servers that this user has, and the farms behind them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/store/database.h"

namespace embedded {

// Opens the farm of a server. A demonstration server gets its farm when it has none; any other
// server that has none is refused as unknown.
std::unique_ptr<Database> OpenServer(const std::string& server);

// The servers that have a file in the state folder, by name.
std::vector<std::string> ListServers();

}  // namespace embedded
