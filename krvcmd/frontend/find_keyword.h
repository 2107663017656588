#pragma once

#include <string_view>

#include "krvcmd/frontend/keyword_node.h"

namespace krvcmd {

// Both comparisons are exact and case-sensitive, with one peculiarity: a blank ends the text of
// its piece of 31 characters, so "query x" equals "query".

// True when the word and the keyword are equal.
bool KeywordEquals(std::string_view word, std::string_view keyword);

// True when the word is a leading part of the keyword. An empty word begins every keyword.
bool KeywordStartsWith(std::string_view word, std::string_view keyword);

// The one node that the word selects, or null. An exact keyword (with "-" or "/" before it where
// the node allows that) always wins; otherwise the word must begin exactly one of the candidates.
const KeywordNode* FindKeyword(KeywordNode::Table candidates, std::string_view word);

}  // namespace krvcmd
