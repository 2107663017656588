#pragma once

#include <memory>

#include "krvcmd/commands/base/command.h"
#include "krvcmd/frontend/grammar/keyword.h"

namespace krvcmd {

// Makes the command object for a command node, or a plain CCommand without a node. System error 22 and no
// object for the node of an option or a parameter.
Status CreateCommand(const KeywordNode* node, std::unique_ptr<CCommand>& command);

}  // namespace krvcmd
