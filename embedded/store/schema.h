// The tables of a farm's database, and how a database of an earlier release is brought forward.
#pragma once

#include <cstdint>

namespace embedded {

class Database;

// Marks the databases of the simulated service ("KRVS").
inline constexpr int32_t kApplicationId = 0x4B525653;

// The version that this release writes. A database of a later one is refused.
inline constexpr int32_t kSchemaVersion = 2;

// Brings a database from `version` (0 = an empty one) to kSchemaVersion; the caller has opened a
// transaction, so that the whole way or none of it is gone.
void Migrate(Database& database, int32_t version);

}  // namespace embedded
