#include "krvcmd/console/query/query_table.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/console/query/column_catalogue.h"
#include "krvcmd/console/query/value_texts.h"

namespace Ostrel::UI::Console {
namespace {

using krvcmd::JukeboxInfo;
using krvcmd::RecordText;
using krvcmd::VolumeInfo;

constexpr uint32_t kWidthWithoutConsole = 32767;

// The last cell of a line stays free, so that a full line does not make the console begin another one.
uint32_t ConsoleLineWidth() {
    const int32_t bufferWidth = Platform::ScreenBufferWidth();
    const bool isUsable = bufferWidth >= 2 && bufferWidth <= INT16_MAX;
    return isUsable ? static_cast<uint32_t>(bufferWidth - 1) : kWidthWithoutConsole;
}

// Collects the cells of one row: those of the columns that the table shows or sorts by, and the status. A
// cell for which there is no memory is left out.
class RowBuilder {
  public:
    RowBuilder(CellStore& cells, const CTable& table) : m_cells(cells), m_table(table) {}

    void Number(uint32_t columnId, int64_t value) {
        if (Uses(columnId)) Add([&]() -> const CTableItem& { return m_cells.Number(columnId, value); });
    }
    void Capacity(uint32_t columnId, int64_t bytes) {
        if (Uses(columnId)) Add([&]() -> const CTableItem& { return m_cells.Capacity(columnId, bytes); });
    }
    void OneBasedNumber(uint32_t columnId, int32_t zeroBasedNumber) {
        if (Uses(columnId))
            Add([&]() -> const CTableItem& { return m_cells.OneBasedNumber(columnId, zeroBasedNumber); });
    }
    void Percent(uint32_t columnId, int64_t free, int64_t total) {
        if (Uses(columnId))
            Add([&]() -> const CTableItem& { return m_cells.Percent(columnId, free, total); });
    }
    void Text(uint32_t columnId, std::string_view text) {
        if (Uses(columnId)) Add([&]() -> const CTableItem& { return m_cells.Text(columnId, text); });
    }
    void Name(uint32_t columnId, std::string_view name) {
        if (Uses(columnId)) Add([&]() -> const CTableItem& { return m_cells.Name(columnId, name); });
    }
    // A text that `format` composes.
    template <typename Format>
    void FormattedText(uint32_t columnId, Format format) {
        if (Uses(columnId)) Add([&]() -> const CTableItem& { return m_cells.Text(columnId, format()); });
    }
    void Directory(uint32_t columnId, std::string_view path) {
        if (Uses(columnId)) Add([&]() -> const CTableItem& { return m_cells.Directory(columnId, path); });
    }
    void Word(uint32_t columnId, std::string_view word) {
        if (Uses(columnId)) Add([&]() -> const CTableItem& { return m_cells.Word(columnId, word); });
    }
    // Every row has a status, needed or not: the table ignores a row without cells.
    void Status(std::string_view word) {
        Add([&]() -> const CTableItem& { return m_cells.Word(column_id::kStatus, word); });
    }

    // In `memory`, which must outlive the row.
    CTableRow MakeRow(std::pmr::memory_resource* memory) const {
        return {std::span(m_row).first(m_count), memory};
    }

  private:
    // Of a row for a disc side with its volume, the longest.
    static constexpr size_t kMostCells = 18;

    bool Uses(uint32_t columnId) const { return m_table.Uses(columnId); }

    template <typename Make>
    void Add(Make make) {
        try {
            m_row[m_count] = &make();
            ++m_count;
        } catch (const std::bad_alloc&) {
            return;
        }
    }

    CellStore& m_cells;
    const CTable& m_table;
    std::array<const CTableItem*, kMostCells> m_row{};
    size_t m_count = 0;
};

void AddJukeboxIdentity(RowBuilder& row, const JukeboxInfo& jukebox) {
    row.Number(column_id::kJukeboxId, jukebox.key.jukeboxId);
    row.Text(column_id::kJukeboxName, RecordText(jukebox.record.name));
}

void AddDevice(RowBuilder& row, const DeviceIdentity& device) {
    row.FormattedText(column_id::kProduct, [&] { return FormatProduct(device); });
    row.Text(column_id::kRevision, RecordText(device.revision));
    row.FormattedText(column_id::kScsiAddress, [&] { return FormatScsiAddress(device); });
}

void AddMediaType(RowBuilder& row, uint32_t mediaType) {
    if (mediaType != krvcmd::kNoMedium) row.Word(column_id::kMediaType, MediaTypeText(mediaType));
}

void AddVolumeCells(RowBuilder& row, const VolumeInfo& volume) {
    const VolumeRecord& record = volume.record;
    const auto total = static_cast<int64_t>(record.totalCapacity);
    const auto free = static_cast<int64_t>(record.freeCapacity);
    // The unsigned difference wraps around when more is free than there is; shown signed.
    const auto used = static_cast<int64_t>(record.totalCapacity - record.freeCapacity);
    row.Number(column_id::kVolumeId, volume.volumeId);
    row.Capacity(column_id::kTotalCapacity, total);
    row.Number(column_id::kTotalBytes, total);
    row.Capacity(column_id::kUsedCapacity, used);
    row.Number(column_id::kUsedBytes, used);
    row.Percent(column_id::kUsedPercent, free, total);
    row.Text(column_id::kLabel, RecordText(record.label));
    row.Name(column_id::kFileSystem, RecordText(record.fileSystem));
    row.Status(VolumeStatusText(record.state));
    row.Word(column_id::kVolumeType, VolumeTypeText(record.type));
    if (!volume.aspects.empty()) row.Directory(column_id::kDirectory, volume.aspects.front());
}

}  // namespace

CKrvQueryTable::CKrvQueryTable() : m_cells(GetMemory()) {
    SetSeparator("|");
    SetMaxWidth(ConsoleLineWidth());
}

bool CKrvQueryTable::SetColumnLetters(std::string_view letters) {
    bool allKnown = true;
    std::vector<CTableColumn> columns;
    for (size_t index = 0; index < letters.size(); ++index) {
        CTableColumn column = MakeColumn(letters.substr(index, 1));
        if (column.GetColumnId() == 0) {
            allKnown = false;
            continue;
        }
        columns.push_back(std::move(column));
    }
    SetColumns(std::move(columns));
    return allKnown;
}

bool CKrvQueryTable::SetSortLetters(std::string_view letters) {
    bool allKnown = true;
    int32_t direction = kAscending;
    std::vector<SortKey> keys;
    for (size_t index = 0; index < letters.size(); ++index) {
        const std::string_view letter = letters.substr(index, 1);
        if (letter == "+") {
            direction = kAscending;
        } else if (letter == "-") {
            direction = kDescending;
        } else if (const uint32_t columnId = FindColumnInfo(letter).columnId; columnId != 0) {
            keys.push_back({columnId, direction});
        } else {
            allKnown = false;
        }
    }
    SetSortKeys(std::move(keys));
    return allKnown;
}

void CKrvQueryTable::AddJukeboxRow(const JukeboxInfo& jukebox) {
    const JukeboxRecord& record = jukebox.record;
    RowBuilder row(m_cells, *this);
    AddJukeboxIdentity(row, jukebox);
    AddDevice(row, record.identity);
    row.Status(EnabledText(record.enabled));
    row.Word(column_id::kFlipper, DoubleSidedText(record.doubleSided));
    row.Number(column_id::kDriveCount, record.driveCount);
    row.Number(column_id::kMagazineCount, record.magazineCount);
    row.Number(column_id::kSlotCount, record.slotCount);
    AddRow(row.MakeRow(GetMemory()));
}

void CKrvQueryTable::AddMagazineRow(const JukeboxInfo& jukebox, const MagazineKey& key,
                                    const MagazineRecord& magazine) {
    RowBuilder row(m_cells, *this);
    AddJukeboxIdentity(row, jukebox);
    row.OneBasedNumber(column_id::kMagazine, key.magazine);
    if (magazine.slotCount != 0) row.Number(column_id::kSlotCount, magazine.slotCount);
    row.Status(PresentText(magazine.present));
    AddRow(row.MakeRow(GetMemory()));
}

void CKrvQueryTable::AddDriveRow(const JukeboxInfo& jukebox, const DriveKey& key, const DriveRecord& drive) {
    RowBuilder row(m_cells, *this);
    AddJukeboxIdentity(row, jukebox);
    AddDevice(row, drive.identity);
    row.OneBasedNumber(column_id::kDrive, key.drive);
    row.Status(EnabledText(drive.enabled));
    AddRow(row.MakeRow(GetMemory()));
}

void CKrvQueryTable::AddSlotRow(const JukeboxInfo& jukebox, const SlotKey& key, const SlotRecord& slot) {
    RowBuilder row(m_cells, *this);
    AddJukeboxIdentity(row, jukebox);
    if (HasSeveralMagazines(jukebox)) row.OneBasedNumber(column_id::kMagazine, key.magazine);
    row.OneBasedNumber(column_id::kSlot, key.slot);
    row.Status(SlotStatusText(slot.state));
    AddMediaType(row, slot.mediumCode);
    AddRow(row.MakeRow(GetMemory()));
}

void CKrvQueryTable::AddSideRow(const JukeboxInfo& jukebox, const SideKey& key, const SideRecord& side,
                                const VolumeInfo& volume) {
    RowBuilder row(m_cells, *this);
    row.FormattedText(column_id::kLocation, [&] { return FormatLocation(jukebox, key); });
    AddVolumeCells(row, volume);
    if (HasSeveralMagazines(jukebox)) row.OneBasedNumber(column_id::kMagazine, key.magazine);
    row.OneBasedNumber(column_id::kSlot, key.slot);
    row.Word(column_id::kSide, SideText(key.side));
    row.Word(column_id::kRecordedState, RecordedStateText(side.state));
    AddMediaType(row, side.mediumCode);
    row.Word(column_id::kFinalization, FinalizationText(side.finalization));
    AddRow(row.MakeRow(GetMemory()));
}

void CKrvQueryTable::AddVolumeRow(const VolumeInfo& volume) {
    RowBuilder row(m_cells, *this);
    AddVolumeCells(row, volume);
    AddRow(row.MakeRow(GetMemory()));
}

}  // namespace Ostrel::UI::Console
