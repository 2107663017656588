#pragma once

#include "krvcmd/frontend/grammar/keyword.h"

namespace krvcmd {

// Everything that may stand on the command line, as constant data.
class CommandGrammar {
  public:
    // The 13 options and commands that can stand before or as the command, in the order of help.
    static KeywordNode::Table TopLevel();

    // The command "delete". It is deliberately not part of the top-level table, so no command
    // line can name it and help does not list it.
    static const KeywordNode& Delete();

    // Nodes that no command line can reach: declared, and kept as data.
    static KeywordNode::Table Unreachable();
};

}  // namespace krvcmd
