#pragma once

#include "krvcmd/commands/base/command.h"
#include "krvcmd/service/access/media_calls.h"

namespace krvcmd {

// Switches jukeboxes, magazines, drives or volumes on or off. Unlike the commands that walk slots,
// the first failure ends the command.
class CAble : public CCommand {
  public:
    Status Run() override;

    // Switches the volumes on the addressed sides of a slot (-1 or 2: both sides); a side without a volume is
    // passed over. The jukebox of the entry is resolved. System error 22 for a side that there is not.
    Status SetSlotVolumesActive(const ItemAddress& entry) const;

  protected:
    explicit CAble(Activity activity) : m_activity(activity) {}

  private:
    Status SetItemActive(const ItemAddress& entry) const;

    Activity m_activity;
};

class CEnable : public CAble {
  public:
    CEnable() : CAble(Activity::Enable) {}
};

class CDisable : public CAble {
  public:
    CDisable() : CAble(Activity::Disable) {}
};

}  // namespace krvcmd
