#pragma once

#include "krvcmd/commands/base/command.h"

namespace krvcmd {

// Starts, stops or restarts the service. A service that is not running cannot give a session, so
// "start" runs without one.
class CService : public CCommand {
  public:
    // System error 22 unless exactly one of start, stop and restart is given.
    Status ParseOptions() override;
    Status Run() override;
    Status Execute() override;

  private:
    bool m_start = false;
    bool m_stop = false;
    bool m_restart = false;
};

}  // namespace krvcmd
