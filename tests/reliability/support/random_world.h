#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/fake_library/fake_library.h"
#include "tests/reliability/support/command_spec.h"
#include "tests/reliability/support/random_numbers.h"

namespace krvcmd::reliability {

// Scripts a farm and failures from the seed: some jukeboxes with magazines, drives, slots and volumes
// in every state, and nonsense among the answers. The same seed gives the same script. Enumerations
// never yield an ID twice.
void ScriptRandomWorld(krvfake::FakeLibrary& library, uint64_t seed);

// A valid command line, mostly about items of such a world. Ranges are short.
CommandSpec RandomCommand(RandomNumbers& random);

// Any bytes but NUL and line breaks, up to `longest` of them, often per cent signs, placeholders, separators
// and control characters.
std::string RandomText(RandomNumbers& random, size_t longest);

// A command line of keywords, parts of keywords, values and rubbish; about half of them are valid.
std::vector<std::string> RandomWords(RandomNumbers& random);

}  // namespace krvcmd::reliability
