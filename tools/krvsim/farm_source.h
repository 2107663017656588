#pragma once

#include <string>

#include "embedded/model/farm.h"

namespace embedded::tools {

// A farm that the command line names: the server "my_server", or its snapshot as "my_server@before".
// "@before" is a snapshot of the local server.
struct FarmSource {
    std::string server;
    std::string snapshot;  // empty = the farm as it is
};

// A server whose own name has an "@" is meant where it has a farm.
FarmSource FarmSourceOf(const std::string& word);

Farm ReadFarm(const FarmSource& source);

}  // namespace embedded::tools
