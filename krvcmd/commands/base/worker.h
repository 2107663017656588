#pragma once

#include <cstdint>

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/frontend/parsing/item_address.h"
#include "krvcmd/service/access/slot_iterator.h"

namespace krvcmd {

// How a walk over slots goes on.
struct WalkRules {
    int32_t repeat = 0;             // successes wanted from the first slot on; 0: no count was given
    bool stopWhenNoMedium = false;  // code 501 ends the walk with success
};

// The second base of the commands that work slot by slot: it turns one addressed item into a
// sequence of calls of the command's per-slot operation.
class CWorker {
  public:
    CWorker() = default;
    CWorker(const CWorker&) = delete;
    CWorker& operator=(const CWorker&) = delete;
    virtual ~CWorker() = default;

    // The command's operation on one slot.
    virtual Status Work(const SlotPosition& position) = 0;

    // Walks the addressed slots and calls Work for each. The jukebox of the address is an ID.
    //
    // Codes 501 and 502 pass over a slot, code 7 ends the walk at once, any other error ends it
    // too. Code 2, the end of the slots, is success.
    Status DoWork(const WalkRules& rules, const ItemAddress& address);

    // Calls Work once, on the slot and side that hold the volume. Skips a volume without a location and
    // succeeds.
    Status DoVolume(int32_t volumeId);

  protected:
    // Walks each addressed entry, in the jukebox with the ID. A failed entry does not end the loop. Returns
    // the result of the last entry. Drive entries are skipped.
    Status WorkOnEntries(AddressKind kind, const ItemAddressList& addresses, int32_t jukeboxId,
                         const WalkRules& rules);

    int32_t m_repeat = 0;  // 0: no repeat count was given
};

}  // namespace krvcmd
