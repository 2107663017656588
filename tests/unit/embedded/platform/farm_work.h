// What several processes do to one farm at once, and what must hold of the farm afterwards.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace embedded_test {

// Imports and exports at random places of Sales Tower. 0 when every call ended as it may while others do the
// same: with success, or with 501 or 502, which others leave behind. `afterEach` is called behind each call.
int MoveAtRandom(unsigned seed, int steps, const std::function<void()>& afterEach);

// Every medium of the farm with its type; the same before and after when none is lost or doubled.
std::string MediaOf(const std::filesystem::path& farm);

// No two media are in one place, a slot is full exactly when a medium is in it, and the database is whole.
void ExpectMediaInTheirPlaces(const std::filesystem::path& farm);

inline constexpr int kWrites = 200;

// Sets directory names, kWrites times, and calls `acknowledged` behind each call that succeeded. 0 when all
// did.
int WriteNames(const std::function<void()>& acknowledged);

// The farm holds exactly what the first `acknowledged` writes left; the one behind them may be there whole,
// for it was under way.
void ExpectExactlyTheAcknowledgedWrites(int acknowledged);

}  // namespace embedded_test
