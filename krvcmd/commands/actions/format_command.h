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
    struct SideRange {
        int32_t first;
        int32_t last;
    };

    // Which sides of the medium to work on. System error 22 for a side that does not exist.
    Status ChooseSides(const SlotPosition& position, SideRange& sides) const;

    // One library call for one side (0 = A, 1 = B, 2 = the whole medium).
    Status FormatSide(const SlotPosition& position, int32_t side) const;

    bool m_hasLabel = false;
    std::string m_label;
    bool m_erase = false;
    bool m_certify = false;
    bool m_sequential = false;
    bool m_finalize = false;
};

}  // namespace krvcmd
