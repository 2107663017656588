#include "krvcmd/commands/base/worker.h"

#include <limits>

#include "krvcmd/service/access/slot_iterator.h"
#include "krvcmd/service/access/volume_lookup.h"
#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

// The service's answers that steer a walk.
constexpr uint32_t kEndOfSlots = os_code::kNoSuchItem;
constexpr uint32_t kInterruptedByOperator = 7;
constexpr uint32_t kNoMediumCode = 501;
constexpr uint32_t kSlotNotUsable = 502;

WorkLevel ChooseLevel(int32_t repeat, int32_t magazine, int32_t slot) {
    if (repeat != 0) return WorkLevel::Slot;
    if (magazine < 0 && slot < 0) return WorkLevel::Jukebox;
    return slot < 0 ? WorkLevel::Magazine : WorkLevel::Slot;
}

// The one-based number of a zero-based index from the library, which may be any number.
int32_t OneBased(int32_t index) {
    return index == std::numeric_limits<int32_t>::max() ? index : index + 1;
}

}  // namespace

Status CWorker::DoWork(int32_t repeat, NoMedium noMedium, int32_t jukeboxId, int32_t magazine, int32_t slot,
                       int32_t side) {
    const WorkLevel level = ChooseLevel(repeat, magazine, slot);
    const bool multiple = repeat != 0 || slot < 0;
    int64_t remaining = repeat;  // successes still wanted

    SlotIterator slots;
    Status status = slots.Initialize(jukeboxId, magazine, slot, side);
    if (!status.IsOk()) return status;
    slots.SetLevel(level);
    do {
        status = Work(slots.Position());
        const uint32_t code = status.Code();
        if (code == kInterruptedByOperator || !multiple) break;
        if (status.IsOk()) --remaining;  // only genuine successes count
        if (noMedium == NoMedium::EndsWalk && code == kNoMediumCode) {
            status = {};
            break;
        }
        if (code == kNoMediumCode || code == kSlotNotUsable) status = {};
        if (status.IsOk()) status = slots.Next();
    } while (status.IsOk() && (level != WorkLevel::Slot || remaining >= 1));

    if (status.Code() == kEndOfSlots) return {};
    return status;
}

Status CWorker::DoVolume(int32_t volumeId) {
    SideKey location;
    bool found = false;
    Status status = ReadFirstVolumeLocation(volumeId, location, found);
    if (!status.IsOk() || !found) return status;
    return DoWork(0, NoMedium::EndsWalk, location.jukeboxId, OneBased(location.magazine),
                  OneBased(location.slot), location.side);
}

Status CWorker::WorkOnEntry(AddressKind kind, const ItemAddress& entry, int32_t jukeboxId,
                            NoMedium noMedium) {
    if (kind == AddressKind::Volumes) return DoVolume(entry.volumeId);
    return DoWork(m_repeat, noMedium, jukeboxId, entry.magazine, entry.slot, entry.side);
}

Status CWorker::WorkOnEntries(AddressKind kind, const ItemAddressList& addresses, int32_t jukeboxId,
                              NoMedium noMedium) {
    Status status;
    if (kind == AddressKind::Drive) return status;
    for (const ItemAddress& entry : addresses) {
        if (InterruptRequested()) break;
        status = WorkOnEntry(kind, entry, jukeboxId, noMedium);
    }
    return status;
}

}  // namespace krvcmd
