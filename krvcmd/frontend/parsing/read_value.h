#pragma once

#include <string_view>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/parameter_list.h"

namespace krvcmd {

// True when the keyword must be followed by a value.
bool TakesValue(const KeywordNode& node);

// Reads `text` as the value of `parameter` by the forms that its node accepts: as numbers first
// when the node has a number form, else, or when that fails, as text. A leading "=" is stepped
// over. System error 22 when no form fits.
Status ReadValue(Parameter& parameter, std::string_view text);

// Reads numbers, ranges ("1-5", and "1/5" just the same) and lists of both into the ranges of
// `parameter`; with an ID form, "@" must come first. System error 22 for anything else, and for
// a number that does not fit 32 bits; the parameter then keeps what it had.
Status ReadNumberList(Parameter& parameter, const ValueSpec& form, std::string_view text);

}  // namespace krvcmd
