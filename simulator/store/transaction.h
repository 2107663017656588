// A change of the database that is kept whole or not at all.
#pragma once

#include <functional>

#include "simulator/store/database.h"

namespace krvsim {

// Begins a transaction that no other process can write beside, runs the work and commits; when the
// work or the commit throws, everything is undone. Waits for other writers.
void InTransaction(Database& database, const std::function<void()>& work);

}  // namespace krvsim
