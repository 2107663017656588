#include "krvcmd/commands/actions/able_command.h"

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/slot_iterator.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {

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
    const JukeboxKey jukebox = MakeJukeboxKey(entry.jukeboxId);
    switch (Kind()) {
        case AddressKind::Jukebox:
            return SetJukeboxActive(m_enable, entry.jukeboxId);
        case AddressKind::Magazine:
            return SetMagazineActive(m_enable, MakeMagazineKey(jukebox, entry.magazine.value_or(kUnset)));
        case AddressKind::Drive:
            return SetDriveActive(m_enable, MakeDriveKey(jukebox, entry.drive.value_or(kUnset)));
        case AddressKind::Volumes:
            return SetVolumeActive(m_enable, entry.volumeId);
        case AddressKind::Slots:
        case AddressKind::SlotSide:
            return SetSlotVolumesActive(entry);
        // GCOVR_EXCL_START: Run has returned when nothing is addressed
        case AddressKind::None:
            break;
    }
    return Status::SystemError(os_code::kInvalidCommandLine);
    // GCOVR_EXCL_STOP
}

Status CAble::SetSlotVolumesActive(const ItemAddress& entry) const {
    SlotIterator slots;
    Status status = slots.Initialize(entry);
    if (!status.IsOk()) return status;

    const SlotPosition& position = slots.Position();
    if (position.side < kUnset || position.side > kBothSides)
        return Status::SystemError(os_code::kInvalidCommandLine);
    const SideRange sides = SidesOf(position.side);
    for (int32_t side = sides.first; status.IsOk() && side <= sides.last; ++side) {
        SideRecord record;
        status = GetSideInfo(position.GetSideKey(side), record);
        if (status.IsOk() && record.volumeId > 0) status = SetVolumeActive(m_enable, record.volumeId);
    }
    return status;
}

}  // namespace krvcmd
