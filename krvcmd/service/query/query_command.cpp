#include "krvcmd/service/query/query_command.h"

#include "krvcmd/frontend/base/memory_guard.h"
#include "krvcmd/frontend/report/result_line.h"
#include "krvcmd/service/access/enumeration.h"
#include "krvcmd/service/interrupt/interrupt.h"

namespace krvcmd {
namespace {

constexpr std::string_view kDefaultSeparator = "|";

Status InvalidQuery() {
    return Status::SystemError(os_code::kInvalidCommandLine);
}

// A number as the user wrote it, made zero-based; -1 (not given) stays.
int32_t ZeroBased(int32_t number) {
    return number >= 1 ? number - 1 : number;
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
    return InvalidQuery();
}

Status CQuery::GatherMagazines(int32_t jukeboxId) {
    if (!AddressesAllJukeboxes()) return m_walks.ListMagazines(jukeboxId);
    return ForEachJukebox([this](int32_t id) { return m_walks.ListMagazines(id); });
}

Status CQuery::GatherDrives(int32_t jukeboxId) {
    if (AddressesAllJukeboxes()) {
        return ForEachJukebox([this](int32_t id) { return m_walks.ListDrives(id); });
    }
    if (Kind() == AddressKind::Drive) return m_walks.ListDrive(jukeboxId, Addresses().Front().drive - 1);
    return m_walks.ListDrives(jukeboxId);
}

Status CQuery::GatherSlotsOrVolumes(QueryObject object, int32_t jukeboxId) {
    using SlotRows = QueryWalks::SlotRows;
    m_walks.SetSlotRows(object == QueryObject::Slots ? SlotRows::Add : SlotRows::LeaveOut);
    if (Kind() == AddressKind::None) {
        if (object == QueryObject::Volumes) return m_walks.ListAllVolumes();
        return ForEachJukebox([this](int32_t id) { return WalkSlots(id, -1, -1, -1); });
    }
    // A failed entry does not end the loop: the last entry's result is the result.
    Status status;
    for (const ItemAddress& entry : Addresses()) {
        if (InterruptRequested()) break;
        status = GatherEntry(entry, jukeboxId);
    }
    return status;
}

Status CQuery::GatherEntry(const ItemAddress& entry, int32_t jukeboxId) {
    switch (Kind()) {
        case AddressKind::Volumes:
            return m_walks.ListVolume(-1, entry.volumeId);
        case AddressKind::Jukebox:
        case AddressKind::Magazine:
        case AddressKind::Slots:
            return WalkSlots(jukeboxId, entry.magazine, entry.slot, entry.side);
        case AddressKind::SlotSide:
            // Straight to the slot: without a magazine the library takes the slot's number as
            // counting through the whole jukebox.
            return m_walks.ListSlot(jukeboxId, ZeroBased(entry.magazine), ZeroBased(entry.slot), entry.side);
        case AddressKind::None:
        case AddressKind::Drive:
            break;
    }
    return InvalidQuery();
}

Status CQuery::WalkSlots(int32_t jukeboxId, int32_t magazine, int32_t slot, int32_t side) {
    return DoWork(0, NoMedium::PassesOver, jukeboxId, magazine, slot, side);
}

Status CQuery::Work(const SlotPosition& position) {
    return m_walks.ListSlot(position.jukeboxId, position.magazine, position.slot, position.side);
}

}  // namespace krvcmd
