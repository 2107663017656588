#pragma once

#include "krvcmd/commands/command.h"

namespace krvcmd {

// Changes nothing, by design, and succeeds. No command line can name it; it is kept as it is
// rather than inventing a removal.
class CDelete : public CCommand {
  public:
    Status Run() override;
};

}  // namespace krvcmd
