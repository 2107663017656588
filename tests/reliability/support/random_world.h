#pragma once

#include <cstdint>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/dice.h"
#include "tests/reliability/support/order.h"

namespace krvcmd::reliability {

// Scripts a farm and failures out of the seed: some jukeboxes with magazines, drives, slots and volumes
// in every state, and any kind of nonsense among the answers. The same seed gives the same script.
// Enumerations are the one thing that is left in order here: they yield no ID twice.
void ScriptRandomWorld(krvfake::FakeLibrary& library, uint64_t seed);

// A command line that the grammar takes, mostly about items of such a world. Ranges are short.
Order RandomOrder(Dice& dice);

// Any bytes but NUL and line breaks, up to `longest` of them, with a liking for per cent signs, placeholders,
// separators and control characters.
std::string RandomText(Dice& dice, size_t longest);

}  // namespace krvcmd::reliability
