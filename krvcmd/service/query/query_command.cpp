#include "krvcmd/service/query/query_command.h"

#include <algorithm>
#include <optional>

#include "krvcmd/frontend/base/memory_guard.h"
#include "krvcmd/frontend/report/result_line.h"
#include "krvcmd/service/access/enumeration.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/keys.h"

namespace krvcmd {
namespace {

constexpr std::string_view kDefaultSeparator = "|";

Status InvalidQuery() {
    return Status::SystemError(os_code::kInvalidCommandLine);
}

// The number 0 on the command line is the index -1: the first item.
int32_t IndexOrUnset(std::optional<int32_t> index) {
    return index.has_value() ? std::max(*index, 0) : kUnset;
}

}  // namespace

CQuery::CQuery() : m_walks(m_table) {}

void CQuery::ReadText(std::string_view name, TextOption& option) const {
    (void)GetStringParameter(name, option.text, option.given);
}

Status CQuery::ParseOptions() {
    // The grammar offers neither configuration, detectsequence nor filter: they are read, and never
    // found.
    m_configuration = HasParameter("configuration");
    m_detectSequence = HasParameter("detectsequence");
    ReadText("columns", m_columns);
    ReadText("sort", m_sort);
    m_notable = HasParameter("notable");
    ReadText("separator", m_separator);
    m_hasWidth = GetIntParameter("width", m_width).IsOk();
    ReadText("filter", m_filter);
    if (Kind() != AddressKind::None && (m_configuration || m_detectSequence)) return InvalidQuery();
    // Neither banner nor success message around the bare rows.
    if (m_notable) GetBannerFlags().quiet = true;
    return {};
}

const QueryObjectInfo* CQuery::ChosenObject() const {
    for (const QueryObjectInfo& info : QueryObjects()) {
        if (HasParameter(info.keyword)) return &info;
    }
    return nullptr;
}

Status CQuery::Run() {
    if (Kind() != AddressKind::None && Addresses().IsEmpty()) return {};
    int32_t jukeboxId = -1;
    if (Kind() != AddressKind::None) {
        if (Status status = ResolveAddressedJukebox(jukeboxId); !status.IsOk()) return status;
    }
    if (const QueryObjectInfo* info = ChosenObject()) return Query(*info, jukeboxId);
    return m_configuration || m_detectSequence ? Status() : InvalidQuery();
}

Status CQuery::Query(const QueryObjectInfo& info, int32_t jukeboxId) {
    if (Status status = ConfigureTable(info); !status.IsOk()) return status;
    // Rows gathered before memory ran out are shown as those before any other failure.
    const Status gathered = GuardMemory([&] { return Gather(info.object, jukeboxId); });
    m_table.Print();
    const Status printed = m_table.Finish();
    return FirstError(gathered, printed);
}

Status CQuery::ConfigureTable(const QueryObjectInfo& info) {
    m_table.SetFormatted(!m_notable);
    m_table.SetSeparator(m_separator.OrElse(kDefaultSeparator));
    if (!m_notable && m_hasWidth) m_table.SetMaxWidth(static_cast<uint32_t>(m_width));
    const bool accepted = m_table.SetColumnLetters(m_columns.OrElse(info.defaultColumns)) &&
                          m_table.SetSortLetters(m_sort.OrElse(info.defaultSort));
    return accepted ? Status() : InvalidQuery();
}

Status CQuery::Gather(QueryObject object, int32_t jukeboxId) {
    switch (object) {
        case QueryObject::Jukeboxes:
            return m_walks.ListJukeboxes(jukeboxId);
        case QueryObject::Magazines:
            return GatherMagazines(jukeboxId);
        case QueryObject::Drives:
            return GatherDrives(jukeboxId);
        case QueryObject::Slots:
        case QueryObject::Volumes:
            return GatherSlotsOrVolumes(object, jukeboxId);
    }
    return InvalidQuery();  // GCOVR_EXCL_LINE: every object has a case
}

Status CQuery::GatherMagazines(int32_t jukeboxId) {
    if (!AddressesAllJukeboxes()) return m_walks.ListMagazines(jukeboxId);
    return ForEachJukebox([this](int32_t id) { return m_walks.ListMagazines(id); });
}

Status CQuery::GatherDrives(int32_t jukeboxId) {
    if (AddressesAllJukeboxes()) {
        return ForEachJukebox([this](int32_t id) { return m_walks.ListDrives(id); });
    }
    if (Kind() == AddressKind::Drive) {
        const int32_t drive = Addresses().Front().drive.value_or(kUnset);
        return m_walks.ListDrive(MakeDriveKey(MakeJukeboxKey(jukeboxId), drive));
    }
    return m_walks.ListDrives(jukeboxId);
}

Status CQuery::GatherSlotsOrVolumes(QueryObject object, int32_t jukeboxId) {
    using SlotRows = QueryWalks::SlotRows;
    m_walks.SetSlotRows(object == QueryObject::Slots ? SlotRows::Add : SlotRows::LeaveOut);
    if (Kind() == AddressKind::None) {
        if (object == QueryObject::Volumes) return m_walks.ListAllVolumes();
        return ForEachJukebox([this](int32_t id) {
            ItemAddress wholeJukebox;
            wholeJukebox.jukeboxId = id;
            return WalkSlots(wholeJukebox);
        });
    }
    // A failed entry does not end the loop: the last entry's result is the result.
    Status status;
    for (ItemAddress entry : Addresses()) {
        if (InterruptRequested()) break;
        entry.jukeboxId = jukeboxId;
        status = GatherEntry(entry);
    }
    return status;
}

Status CQuery::GatherEntry(const ItemAddress& entry) {
    switch (Kind()) {
        case AddressKind::Volumes:
            return m_walks.ListVolume(QueryWalks::kNoJukebox, entry.volumeId);
        case AddressKind::Jukebox:
        case AddressKind::Magazine:
        case AddressKind::Slots:
            return WalkSlots(entry);
        case AddressKind::SlotSide:
            // Straight to the slot: without a magazine the library takes the slot's number as
            // counting through the whole jukebox.
            return m_walks.ListSlot({entry.jukeboxId, IndexOrUnset(entry.magazine), IndexOrUnset(entry.slot),
                                     entry.side.value_or(kUnset)});
        case AddressKind::None:
        case AddressKind::Drive:
            break;
    }
    return InvalidQuery();
}

Status CQuery::WalkSlots(const ItemAddress& address) {
    return DoWork({}, address);
}

Status CQuery::Work(const SlotPosition& position) {
    return m_walks.ListSlot(position);
}

}  // namespace krvcmd
