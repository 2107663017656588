#include "krvcmd/commands/base/worker.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/codes.h"

namespace krvcmd {
namespace {

WorkLevel ChooseLevel(int32_t repeat, const ItemAddress& address) {
    if (repeat != 0 || address.slot.has_value()) return WorkLevel::Slot;
    return address.magazine.has_value() ? WorkLevel::Magazine : WorkLevel::Jukebox;
}

// An index in a location as an address gives it. The library may answer any number: one below -1 is no
// address, and the largest number has no index.
std::optional<int32_t> AddressedIndex(int32_t index) {
    if (index < kUnset) return std::nullopt;
    return std::min(index, std::numeric_limits<int32_t>::max() - 1);
}

}  // namespace

Status CWorker::DoWork(const WalkRules& rules, const ItemAddress& address) {
    const WorkLevel level = ChooseLevel(rules.repeat, address);
    const bool isWalk = rules.repeat != 0 || !address.slot.has_value();
    int64_t remaining = rules.repeat;  // successes still wanted

    SlotIterator slots;
    Status status = slots.Initialize(address);
    if (!status.IsOk()) return status;
    slots.SetLevel(level);
    do {
        status = Work(slots.Position());
        const uint32_t code = status.Code();
        if (code == service_code::kStoppedByOperator || !isWalk) break;
        if (status.IsOk()) --remaining;  // only genuine successes count
        if (rules.stopWhenNoMedium && code == service_code::kNoMedium) {
            status = {};
            break;
        }
        if (code == service_code::kNoMedium || code == service_code::kSlotNotUsable) status = {};
        if (status.IsOk()) status = slots.Next();
    } while (status.IsOk() && (level != WorkLevel::Slot || remaining >= 1));

    // At the end of the slots the iterator reports the same code as a system error.
    static_assert(service_code::kNoSuchItem == os_code::kNoSuchItem);
    return status.Code() == service_code::kNoSuchItem ? Status() : status;
}

Status CWorker::DoVolume(int32_t volumeId) {
    std::optional<SideKey> location;
    Status status = GetFirstVolumeLocation(volumeId, location);
    if (!status.IsOk() || !location.has_value()) return status;
    ItemAddress address;
    address.jukeboxId = location->jukeboxId;
    address.magazine = AddressedIndex(location->magazine);
    address.slot = AddressedIndex(location->slot);
    address.side = location->side;
    return DoWork({.stopWhenNoMedium = true}, address);
}

Status CWorker::WorkOnEntries(AddressKind kind, const ItemAddressList& addresses, int32_t jukeboxId,
                              const WalkRules& rules) {
    Status status;
    if (kind == AddressKind::Drive) return status;
    for (ItemAddress entry : addresses) {
        if (InterruptRequested()) break;
        entry.jukeboxId = jukeboxId;
        status = kind == AddressKind::Volumes ? DoVolume(entry.volumeId) : DoWork(rules, entry);
    }
    return status;
}

}  // namespace krvcmd
