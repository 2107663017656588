#pragma once

#include <string>
#include <vector>

#include "tests/reliability/support/dice.h"

namespace krvcmd::reliability {

// A command line out of keywords, parts of keywords, values and rubbish: about as often good as bad.
std::vector<std::string> RandomWords(Dice& dice);

}  // namespace krvcmd::reliability
