#pragma once

#include <span>
#include <string_view>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/grammar/keyword.h"
#include "krvcmd/frontend/parsing/parameter_list.h"
#include "krvcmd/frontend/parsing/token.h"

namespace krvcmd {

// True when the keyword must be followed by a value.
bool TakesValue(const KeywordNode& node);

// Reads `text` as the value of `parameter` by the forms that its node accepts: as numbers when the node has a
// number form, and as text when it has none or the text is no number. One leading "=" is skipped. System
// error 22 when no form fits.
Status ReadValue(Parameter& parameter, std::string_view text);

// Reads numbers, ranges ("1-5" or "1/5") and lists of both into the ranges of `parameter`; an ID form needs a
// leading "@". System error 22 for anything else and for a number above 2147483647; the parameter then stays
// as it was.
Status ReadNumberList(Parameter& parameter, const ValueSpec& form, std::string_view text);

// Parses the words of `stream` into `line`, beginning with `candidates`; after a command word only that
// command's parameters are candidates. The first fault ends parsing with system error 22, and `line` keeps
// what was parsed until then.
Status Parse(ParameterList& line, TokenStream& stream, KeywordNode::Table candidates);

// Parses a whole command line (the arguments after the program's path) by the grammar.
Status ParseCommandLine(std::span<const char* const> arguments, ParameterList& line);

}  // namespace krvcmd
