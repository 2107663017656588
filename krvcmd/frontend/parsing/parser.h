#pragma once

#include <span>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/parameter_list.h"
#include "krvcmd/frontend/parsing/token.h"

namespace krvcmd {

// Parses the words of `stream` into `line`, beginning with `candidates`; once a command word is
// recognised, only that command's parameters are candidates. The first fault ends parsing with
// system error 22, and `line` keeps what was parsed until then.
Status Parse(ParameterList& line, TokenStream& stream, KeywordNode::Table candidates);

// Parses a whole command line (the arguments after the program's path) by the grammar.
Status ParseCommandLine(std::span<const char* const> arguments, ParameterList& line);

}  // namespace krvcmd
