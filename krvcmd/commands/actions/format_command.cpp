#include "krvcmd/commands/actions/format_command.h"

#include <algorithm>

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/media_calls.h"
#include "krvcmd/service/sdk/codes.h"
#include "krvcmd/service/sdk/records.h"

namespace krvcmd {
namespace {

// A side that cannot be asked about counts as present; its error is not reported.
bool IsSideBAbsent(const SlotPosition& position) {
    SideRecord record;
    return GetSideInfo(position.GetSideKey(kSideB), record).IsOk() && record.state == side_state::kNotPresent;
}

}  // namespace

Status CFormat::ParseOptions() {
    (void)GetStringParameter("label", m_label, m_hasLabel);
    m_erase = HasParameter("erase");
    m_certify = HasParameter("certify");
    m_sequential = HasParameter("sequential");
    m_finalize = HasParameter("finalize");
    return {};
}

Status CFormat::Run() {
    if (AddressesNothing()) return {};
    int32_t jukeboxId = -1;
    Status status = ResolveAddressedJukebox(jukeboxId);
    if (!status.IsOk()) return status;
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, {});
}

Status CFormat::ChooseSides(const SlotPosition& position, SideRange& sides) const {
    if (position.side > kBothSides) return Status::SystemError(os_code::kInvalidCommandLine);
    sides = SidesOf(position.side);
    const bool areBoth = sides.first != sides.last;
    if (areBoth && (m_erase || !m_finalize) && IsSideBAbsent(position)) sides.last = kSideA;
    if (m_finalize) sides = {kBothSides, kBothSides};
    return {};
}

Status CFormat::Work(const SlotPosition& position) {
    SideRange sides{};
    Status status = ChooseSides(position, sides);
    for (int32_t side = sides.first; status.IsOk() && side <= sides.last; ++side) {
        status = FormatSide(position.GetSideKey(side));
    }
    return status;
}

Status CFormat::FormatSide(const SideKey& key) const {
    if (m_erase) return EraseVolume(key);
    if (m_finalize) return FinalizeMedium(key);

    FormatOptions options;
    Preset(options);
    if (m_hasLabel) {
        // One byte of the field stays for the NUL.
        if (m_label.size() >= sizeof(options.label)) return Status::SystemError(os_code::kInvalidCommandLine);
        std::ranges::copy(m_label, options.label);
    }
    options.certify = m_certify ? 1 : 0;
    options.sequential = m_sequential ? 1 : 0;
    return FormatVolume(key, options);
}

}  // namespace krvcmd
