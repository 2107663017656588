#pragma once

#include <cstdint>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/service/access/slot_iterator.h"

namespace krvcmd {

// The second base of the commands that work slot by slot: it turns one addressed item into a
// sequence of calls of the command's per-slot operation.
class CWorker {
  public:
    // What an answer "no medium" (code 501) means for the walk.
    enum class NoMedium { PassesOver, EndsWalk };

    CWorker() = default;
    CWorker(const CWorker&) = delete;
    CWorker& operator=(const CWorker&) = delete;
    virtual ~CWorker() = default;

    // The command's operation on one slot; the position is zero-based.
    virtual Status Work(const SlotPosition& position) = 0;

    // Walks the addressed slots and calls Work for each. `magazine` and `slot` are one-based, -1
    // when not given; `side` is passed through. `repeat` is the number of successes that are
    // wanted from the addressed slot on; 0 when none was given.
    //
    // Codes 501 and 502 pass over a slot, code 7 ends the walk at once, any other error ends it
    // too. Code 2, the end of the slots, is success.
    Status DoWork(int32_t repeat, NoMedium noMedium, int32_t jukeboxId, int32_t magazine, int32_t slot,
                  int32_t side);

    // Calls Work once, on the slot and side that hold the volume. A volume that lies nowhere is
    // left alone, with success.
    Status DoVolume(int32_t volumeId);

  protected:
    // Hands each addressed entry to the walk. A failed entry does not end the loop: the last
    // entry's result is the result, by design. Drive entries are skipped.
    Status WorkOnEntries(AddressKind kind, const ItemAddressList& addresses, int32_t jukeboxId,
                         NoMedium noMedium);

    int32_t m_repeat = 0;  // 0: no repeat count was given

  private:
    Status WorkOnEntry(AddressKind kind, const ItemAddress& entry, int32_t jukeboxId, NoMedium noMedium);
};

}  // namespace krvcmd
