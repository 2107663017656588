#pragma once

#include "krvcmd/commands/base/command.h"
#include "krvcmd/service/access/media_calls.h"

namespace krvcmd {

// Switches jukeboxes, magazines, drives or volumes on or off. Unlike the commands that walk slots,
// the first failure ends the command.
class CAble : public CCommand {
  public:
    Status Run() override;

    // Switches the volumes on the addressed sides of a slot (no side or 2: both); a side without a volume is
    // passed over. The jukebox of the entry is an ID. System error 22 for an unknown side.
    Status SetSlotVolumesActive(const ItemAddress& entry) const;

  protected:
    explicit CAble(Enable enable) : m_enable(enable) {}

  private:
    Status SetItemActive(const ItemAddress& entry) const;

    Enable m_enable;
};

class CEnable : public CAble {
  public:
    CEnable() : CAble(Enable::Yes) {}
};

class CDisable : public CAble {
  public:
    CDisable() : CAble(Enable::No) {}
};

}  // namespace krvcmd
