#include "krvcmd/commands/actions/media_commands.h"

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/media_calls.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {
namespace {

constexpr uint32_t kAlreadyDone = 4;  // service answer: the slot is as it was wanted
constexpr int32_t kBothSides = 2;

// A slot that is already as wanted counts as done. Only the service's own answer does: the system
// error of the same number is an interruption.
Status TreatAlreadyDoneAsSuccess(const Status& status) {
    return status.IsServiceError() && status.Code() == kAlreadyDone ? Status() : status;
}

SlotKey SlotKeyOf(const SlotPosition& position) {
    return MakeSlotKey(position.jukeboxId, position.magazine, position.slot);
}

}  // namespace

// The look-up's own result is discarded: without a repeat count the command goes on with 0.

Status CImport::ParseOptions() {
    (void)GetIntParameter("repeat", m_repeat);
    return {};
}

Status CImport::Run() {
    if (AddressesNothing()) return {};
    int32_t jukeboxId = -1;
    // Not ResolveAddressedJukebox: a volume address makes no exception here and is not resolved.
    Status status = ResolveJukebox(Addresses().Front(), jukeboxId);
    if (!status.IsOk()) return status;
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, NoMedium::EndsWalk);
}

Status CImport::Work(const SlotPosition& position) {
    return TreatAlreadyDoneAsSuccess(ImportMedium(SlotKeyOf(position)));
}

Status CExport::ParseOptions() {
    (void)GetIntParameter("repeat", m_repeat);
    return {};
}

Status CExport::Run() {
    if (AddressesNothing()) return {};
    int32_t jukeboxId = -1;
    Status status = ResolveAddressedJukebox(jukeboxId);
    if (!status.IsOk()) return status;
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, NoMedium::PassesOver);
}

Status CExport::Work(const SlotPosition& position) {
    return TreatAlreadyDoneAsSuccess(ExportMedium(SlotKeyOf(position)));
}

Status CScan::Run() {
    if (AddressesNothing()) return {};
    int32_t jukeboxId = -1;
    Status status = ResolveAddressedJukebox(jukeboxId);
    if (!status.IsOk()) return status;
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, NoMedium::PassesOver);
}

Status CScan::Work(const SlotPosition& position) {
    const int32_t side = position.side < 0 ? kBothSides : position.side;
    if (side > kBothSides) return Status::SystemError(os_code::kInvalidCommandLine);
    return TreatAlreadyDoneAsSuccess(
        ScanMedium(MakeSideKey(position.jukeboxId, position.magazine, position.slot, kBothSides)));
}

}  // namespace krvcmd
