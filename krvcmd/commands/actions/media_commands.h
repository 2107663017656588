#pragma once

#include "krvcmd/commands/base/command.h"
#include "krvcmd/commands/base/worker.h"

namespace krvcmd {

// Moves media from the import station into slots. Has no volume form: a volume address fails
// because it names no jukebox.
class CImport : public CCommand, public CWorker {
  public:
    Status ParseOptions() override;
    Status Run() override;
    Status Work(const SlotPosition& position) override;
};

// Moves media out of slots.
class CExport : public CCommand, public CWorker {
  public:
    Status ParseOptions() override;
    Status Run() override;
    Status Work(const SlotPosition& position) override;
};

// Reads media anew. A side only checks the address: the medium is always scanned whole.
class CScan : public CCommand, public CWorker {
  public:
    Status Run() override;
    Status Work(const SlotPosition& position) override;
};

}  // namespace krvcmd
