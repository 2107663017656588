#pragma once

#include "krvcmd/commands/base/command.h"

namespace krvcmd {

// Prints help. It opens no session, so it works without a reachable service. Its banner appears even when
// "quiet" is given.
class CHelp : public CCommand {
  public:
    Status Run() override;
    Status Execute() override;
};

}  // namespace krvcmd
