#pragma once

#include <memory>

#include "krvcmd/commands/base/command.h"
#include "krvcmd/frontend/grammar/keyword.h"

namespace krvcmd {

// Creates the command object for a command node; the only place that knows every command. No node
// gives a plain CCommand. System error 22, and no object, for a keyword that is no command's.
Status CreateCommand(const KeywordNode* node, std::unique_ptr<CCommand>& command);

}  // namespace krvcmd
