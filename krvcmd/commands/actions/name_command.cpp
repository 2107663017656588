#include "krvcmd/commands/actions/name_command.h"

#include "krvcmd/service/access/media_calls.h"
#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {

Status CName::ParseOptions() {
    (void)GetStringParameter("", m_newName, m_hasNewName);
    return {};
}

Status CName::Run() {
    if (AddressesNothing()) return {};
    int32_t jukeboxId = -1;
    Status status = ResolveAddressedJukebox(jukeboxId);
    if (!status.IsOk()) return status;
    // A failed entry does not end the loop: the last entry's result is the result.
    for (const ItemAddress& entry : Addresses()) {
        if (InterruptRequested()) break;
        status = Rename(entry, jukeboxId);
    }
    return status;
}

Status CName::Rename(const ItemAddress& entry, int32_t jukeboxId) const {
    if (Kind() == AddressKind::Volumes) return SetVolumeDirectory(entry.volumeId, m_newName);
    if (Kind() == AddressKind::Jukebox) return RenameJukebox(jukeboxId, m_newName);
    return Status::SystemError(os_code::kInvalidCommandLine);
}

Status CDelete::Run() {
    return {};
}

}  // namespace krvcmd
