#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/parameter_list.h"

namespace krvcmd::test {

// The words of a command line, after the program's path.
using Words = std::vector<const char*>;

// A parsed line in one line of text: options, ":" and the command, then its parameters, each with its
// value. A text stands in double quotes; numbers stand in braces, ranges with "-" between both ends.
//
//     quiet server="my_server" : import J={29} S={1,3-5} repeat={3}
std::string Serialise(const ParameterList& line);

// The words, each in brackets: "[import][J@29]".
std::string Spelled(const Words& words);

// The serialised line of the words, or "error N" with the code of the status.
std::string ParsedAs(const Words& words);

// "OK", "error N" or "service error N: text".
std::string Text(const Status& status);

// The node of the grammar that `keyword` spells: of the top-level table, or, as "query.slots", of a
// command's parameters. The test fails when there is none.
const KeywordNode& Node(std::string_view keyword);

// A keyword that is not the grammar's, without value, conflicts and children.
KeywordNode MakeNode(std::string_view keyword, KeywordKind kind = KeywordKind::Parameter);

}  // namespace krvcmd::test
