#pragma once

#include <cstdint>
#include <string>

#include "embedded/store/database.h"

namespace embedded {

// Names a change for a caller that may lose the answer.
struct ChangeNumber {
    std::string client;   // no two callers have the same
    uint64_t number = 0;  // from 1; a caller uses each once
};

// Keeps the number in the transaction of its change. Refuses a number that is settled: then the change must
// not be made.
void KeepChangeNumber(Database& database, const ChangeNumber& number);

// Refuses a number that is used or settled, and keeps nothing: for a change that begins before its
// transaction.
void RequireNewNumber(Database& database, const ChangeNumber& number);

// Whether the change was made. One that was not is never made from now on. In a transaction of its own. The
// caller stops the robots of real jukeboxes first, so that no change is in progress.
bool SettleChange(Database& database, const ChangeNumber& number);

}  // namespace embedded
