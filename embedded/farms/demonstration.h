// The farm that the demonstration servers start with.
#pragma once

#include <string_view>

#include "embedded/store/database.h"

namespace embedded {

// The servers that need no set-up: the local one and those that krvcmd's help texts speak of.
bool IsDemonstrationServer(std::string_view server);

// The layout file of the demonstration farm.
std::string_view DemonstrationLayout();

// Puts the demonstration farm into a database whose tables are empty.
void FillDemonstrationFarm(Database& database, std::string_view server);

}  // namespace embedded
