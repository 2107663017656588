#pragma once

#include <cstdint>

namespace embedded {

class Database;

// Marks the databases of the embedded service ("KRVS").
inline constexpr int32_t kApplicationId = 0x4B525653;

// The version that this release writes. A database of a later one is refused.
inline constexpr int32_t kSchemaVersion = 5;

// Migrates a database from `version` (0 = an empty one) to kSchemaVersion. The caller has opened a
// transaction, so that all steps are taken or none.
void Migrate(Database& database, int32_t version);

}  // namespace embedded
