#pragma once

#include "krvcmd/commands/base/command.h"

namespace krvcmd {

// Prints help. Opens no session, so it works without a reachable service. The option "quiet" does
// not suppress its banner, by design.
class CHelp : public CCommand {
  public:
    Status Run() override;
    Status Execute() override;
};

}  // namespace krvcmd
