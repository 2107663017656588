#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/store/database.h"

namespace embedded {

// Opens the farm of a server. A demonstration server gets its farm when it has none; any other server that
// has none is refused as unknown, and a farm that does not describe its server as damaged.
std::unique_ptr<Database> OpenServer(const std::string& server);

// The same for a simulated farm; refuses one that is attached to real jukeboxes.
std::unique_ptr<Database> OpenSimulatedServer(const std::string& server);
void RequireSimulated(Database& database, const std::string& server);

// The same for a farm that may lack the description of its server.
std::unique_ptr<Database> OpenServerToCheck(const std::string& server);

// The servers that have a file in the folder of the farms, or in the shared one as far as this user may look
// into it, by name. Refuses a folder of $KRVSIM_HOME that does not exist, and one that cannot be read.
std::vector<std::string> ListServers();

// The servers that need no set-up: the local one and those that krvcmd's help texts use as examples.
bool IsDemonstrationServer(std::string_view server);

// The layout file of the farm that the demonstration servers start with.
std::string_view DemonstrationLayout();

// Writes the demonstration farm into a database whose tables are empty.
void FillDemonstrationFarm(Database& database, std::string_view server);

}  // namespace embedded
