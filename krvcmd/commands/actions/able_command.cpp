#include "krvcmd/commands/actions/able_command.h"

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/slot_iterator.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {
namespace {

constexpr int32_t kNoSideGiven = -1;
constexpr int32_t kSideA = 0;
constexpr int32_t kSideB = 1;
constexpr int32_t kBothSides = 2;

}  // namespace

Status CAble::Run() {
    if (AddressesNothing()) return {};
    int32_t jukeboxId = -1;
    Status status = ResolveAddressedJukebox(jukeboxId);
    if (!status.IsOk()) return status;
    for (ItemAddress entry : Addresses()) {
        if (InterruptRequested()) break;
        entry.jukeboxId = jukeboxId;
        status = SetItemActive(entry);
        if (status.Code() != 0) break;
    }
    return status;
}

Status CAble::SetItemActive(const ItemAddress& entry) const {
    switch (Kind()) {
        case AddressKind::Jukebox:
            return SetJukeboxActive(m_activity, entry.jukeboxId);
        case AddressKind::Magazine:
            return SetMagazineActive(m_activity, entry.jukeboxId, entry.magazine - 1);
        case AddressKind::Drive:
            return SetDriveActive(m_activity, entry.jukeboxId, entry.drive - 1);
        case AddressKind::Volumes:
            return SetVolumeActive(m_activity, entry.volumeId);
        case AddressKind::Slots:
        case AddressKind::SlotSide:
            return SetSlotVolumesActive(entry);
        case AddressKind::None:
            break;
    }
    return Status::SystemError(os_code::kInvalidCommandLine);
}

Status CAble::SetSlotVolumesActive(const ItemAddress& entry) const {
    SlotIterator slots;
    Status status = slots.Initialize(entry.jukeboxId, entry.magazine, entry.slot, entry.side);
    if (!status.IsOk()) return status;

    const SlotPosition& position = slots.Position();
    if (entry.side < kNoSideGiven || entry.side > kBothSides)
        return Status::SystemError(os_code::kInvalidCommandLine);
    const bool oneSide = entry.side == kSideA || entry.side == kSideB;
    const int32_t first = oneSide ? entry.side : kSideA;
    const int32_t last = oneSide ? entry.side : kSideB;
    for (int32_t side = first; status.IsOk() && side <= last; ++side) {
        SideRecord record;
        status = GetSideInfo(MakeSideKey(position.jukeboxId, position.magazine, position.slot, side), record);
        if (status.IsOk() && record.volumeId > 0) status = SetVolumeActive(m_activity, record.volumeId);
    }
    return status;
}

}  // namespace krvcmd
