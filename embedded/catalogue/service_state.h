#pragma once

#include <cstdint>
#include <string>

#include "embedded/store/database.h"

namespace embedded {

// The service of a server, as every call finds it.
struct ServiceState {
    bool isRunning = false;
    int64_t epoch = 0;         // grows with every start; sessions of an older one are over
    int64_t journalLimit = 0;  // the calls that the journal keeps; 0 = there is no journal
    int64_t faultCount = 0;
    bool isRealTime = false;  // calls that handle a medium take as long as on a real jukebox
    bool isAttached = false;  // to real jukeboxes
};

ServiceState ReadServiceState(Database& database);

// Each runs in the caller's transaction and returns what it changed, in words for the journal; empty when the
// service was in that state already.
std::string StartService(Database& database);
std::string StopService(Database& database);
std::string RestartService(Database& database);

}  // namespace embedded
