#pragma once

#include "krvcmd/frontend/grammar/keyword.h"

namespace krvcmd {

// All keywords of the command line, as constant data.
class CommandGrammar {
  public:
    // The 13 options and commands, in the order of help.
    static KeywordNode::Table TopLevel();

    // The command "delete". It is deliberately absent from the top-level table: no command line can name it
    // and help does not list it.
    static const KeywordNode& Delete();

    // Declared keywords that no command line can reach.
    static KeywordNode::Table Unreachable();
};

}  // namespace krvcmd
