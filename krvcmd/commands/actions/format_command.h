#pragma once

#include <string>

#include "krvcmd/commands/base/command.h"
#include "krvcmd/commands/base/worker.h"

namespace krvcmd {

// Formats, erases or finalizes the media in the addressed slots.
class CFormat : public CCommand, public CWorker {
  public:
    Status ParseOptions() override;
    Status Run() override;
    Status Work(const SlotPosition& position) override;

  private:
    // Which sides of the medium to work on. System error 22 for an unknown side.
    Status ChooseSides(const SlotPosition& position, SideRange& sides) const;

    // One library call for side A, side B or the whole medium.
    Status FormatSide(const SideKey& key) const;

    bool m_hasLabel = false;
    std::string m_label;
    bool m_erase = false;
    bool m_certify = false;
    bool m_sequential = false;
    bool m_finalize = false;
};

}  // namespace krvcmd
