// A change of the database that is kept whole or not at all.
#pragma once

#include <functional>

#include "embedded/store/database.h"

namespace embedded {

// Ends a transaction that is still open: some failures leave one, others have ended it already. Without
// memory even this does not succeed; then it is left to the next call, which begins with it.
void RollBackWhatIsLeft(Database& database);

// Begins a transaction that no other process can write beside, runs the work and commits; when the
// work or the commit throws, everything is undone. Waits for other writers.
void InTransaction(Database& database, const std::function<void()>& work);

}  // namespace embedded
