#include "krvcmd/commands/actions/format_command.h"

#include <algorithm>

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/access/media_calls.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {
namespace {

constexpr int32_t kSideA = 0;
constexpr int32_t kSideB = 1;
constexpr int32_t kWholeMedium = 2;
constexpr uint32_t kSideNotPresent = 1;  // recorded state of a side

// A side that cannot be asked about counts as present; its error is not reported.
bool IsSideBAbsent(const SlotPosition& position) {
    SideRecord record;
    const SideKey key = MakeSideKey(position.jukeboxId, position.magazine, position.slot, kSideB);
    return GetSideInfo(key, record).IsOk() && record.state == kSideNotPresent;
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
    return WorkOnEntries(Kind(), Addresses(), jukeboxId, NoMedium::PassesOver);
}

Status CFormat::ChooseSides(const SlotPosition& position, SideRange& sides) const {
    if (position.side > kWholeMedium) return Status::SystemError(os_code::kInvalidCommandLine);
    if (position.side == kSideA || position.side == kSideB) {
        sides = {position.side, position.side};
    } else {
        sides = {kSideA, kSideB};
        if ((m_erase || !m_finalize) && IsSideBAbsent(position)) sides.last = kSideA;
    }
    if (m_finalize) sides = {kWholeMedium, kWholeMedium};
    return {};
}

Status CFormat::Work(const SlotPosition& position) {
    SideRange sides{};
    Status status = ChooseSides(position, sides);
    for (int32_t side = sides.first; status.IsOk() && side <= sides.last; ++side) {
        status = FormatSide(position, side);
    }
    return status;
}

Status CFormat::FormatSide(const SlotPosition& position, int32_t side) const {
    const SideKey key = MakeSideKey(position.jukeboxId, position.magazine, position.slot, side);
    if (m_erase) return EraseVolume(key);
    if (m_finalize) return FinalizeMedium(key);

    FormatOptions options{};
    options.size = sizeof(FormatOptions);
    if (m_hasLabel) {
        // One byte of the field stays for the NUL.
        if (m_label.size() >= sizeof(options.label)) return Status::SystemError(os_code::kInvalidCommandLine);
        std::copy(m_label.begin(), m_label.end(), options.label);
    }
    options.certify = m_certify ? 1 : 0;
    options.sequential = m_sequential ? 1 : 0;
    return FormatVolume(key, options);
}

}  // namespace krvcmd
