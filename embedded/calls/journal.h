// The journal of a farm: every call that any process made, while it is switched on.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "embedded/calls/call_info.h"
#include "embedded/store/database.h"

namespace embedded {

struct JournalEntry {
    CallInfo call;
    std::chrono::system_clock::time_point time;  // of its beginning
    std::chrono::steady_clock::duration duration{0};
    uint64_t session = 0;
    bool succeeded = true;
    int32_t code = 0;
    std::string text;    // of the failure
    std::string change;  // what the call changed, in words; empty when nothing
};

// Appends the entry and drops what is beyond the limit, the oldest entries first. The caller has
// opened a transaction.
void WriteJournal(Database& database, int64_t limit, const JournalEntry& entry);

}  // namespace embedded
