#include "krvcmd/commands/actions/media_commands.h"

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/media_calls.h"
#include "krvcmd/service/sdk/codes.h"

namespace krvcmd {
namespace {

// A slot that is already as wanted counts as done. Only the service's own answer does: the system
// error of the same number is an interruption.
Status TreatAlreadyDoneAsSuccess(const Status& status) {
    return status.IsServiceError() && status.Code() == service_code::kAlreadyDone ? Status() : status;
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
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, {.repeat = m_repeat, .stopWhenNoMedium = true});
}

Status CImport::Work(const SlotPosition& position) {
    return TreatAlreadyDoneAsSuccess(ImportMedium(position.GetSlotKey()));
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
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, {.repeat = m_repeat});
}

Status CExport::Work(const SlotPosition& position) {
    return TreatAlreadyDoneAsSuccess(ExportMedium(position.GetSlotKey()));
}

Status CScan::Run() {
    if (AddressesNothing()) return {};
    int32_t jukeboxId = -1;
    Status status = ResolveAddressedJukebox(jukeboxId);
    if (!status.IsOk()) return status;
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, {});
}

Status CScan::Work(const SlotPosition& position) {
    if (position.side > kBothSides) return Status::SystemError(os_code::kInvalidCommandLine);
    return TreatAlreadyDoneAsSuccess(ScanMedium(position.GetSideKey(kBothSides)));
}

}  // namespace krvcmd
