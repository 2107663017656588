// Writes a farm as a layout file, which ReadLayout reads back into an equal farm, or as JSON.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "embedded/model/farm.h"

namespace embedded {

// Fields that have their usual value are left out.
void WriteLayout(std::ostream& out, std::string_view server, const Farm& farm);

// One object; docs/krvsim.md describes it. Numbers count from 1 as in a layout file, nothing is left
// out, and states are words.
void WriteJson(std::ostream& out, std::string_view server, const Farm& farm);

// The version of that object.
inline constexpr int kJsonSchema = 1;

// Whether the bytes are UTF-8 and hold no zero, which is what both formats can write as a text.
bool IsText(std::string_view bytes);

// Two hexadecimal digits for each byte.
std::string ToHex(std::string_view bytes);

}  // namespace embedded
