#pragma once

#include "embedded/attached/base/big_endian.h"

namespace embedded::attached {

// Whether bytes look as if they came from a good cipher: every value about as often as any other, but not
// more evenly than chance has it. Fewer than 16 KiB never do.
bool LooksLikeNoise(Bytes bytes);

}  // namespace embedded::attached
