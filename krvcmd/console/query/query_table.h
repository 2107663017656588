#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <new>
#include <string_view>
#include <utility>

#include "krvcmd/console/table/cell_store.h"
#include "krvcmd/console/table/table.h"
#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/service/sdk/records.h"

namespace Ostrel::UI::Console {

// Collects the cells of one row. A cell for which there is no memory is left out of the row.
class RowBuilder {
  public:
    // The row has room for `cellCount` cells, which `cells` makes.
    RowBuilder(CellStore& cells, size_t cellCount, std::pmr::memory_resource* memory)
        : m_cells(cells), m_row(cellCount, memory) {}

    void Number(uint32_t columnId, int64_t value) {
        Add([&]() -> const CTableItem& { return m_cells.Number(columnId, value); });
    }
    void Capacity(uint32_t columnId, int64_t bytes) {
        Add([&]() -> const CTableItem& { return m_cells.Capacity(columnId, bytes); });
    }
    void OneBasedNumber(uint32_t columnId, int32_t zeroBasedNumber) {
        Add([&]() -> const CTableItem& { return m_cells.OneBasedNumber(columnId, zeroBasedNumber); });
    }
    void Percent(uint32_t columnId, int64_t free, int64_t total) {
        Add([&]() -> const CTableItem& { return m_cells.Percent(columnId, free, total); });
    }
    void Text(uint32_t columnId, std::string_view text) {
        Add([&]() -> const CTableItem& { return m_cells.Text(columnId, text); });
    }
    // A text that `format` composes.
    template <typename Format>
    void FormattedText(uint32_t columnId, Format format) {
        Add([&]() -> const CTableItem& { return m_cells.Text(columnId, format()); });
    }
    void Directory(uint32_t columnId, std::string_view path) {
        Add([&]() -> const CTableItem& { return m_cells.Directory(columnId, path); });
    }
    void Word(uint32_t columnId, std::string_view word) {
        Add([&]() -> const CTableItem& { return m_cells.Word(columnId, word); });
    }

    CTableRow TakeRow() { return std::move(m_row); }

  private:
    template <typename Make>
    void Add(Make make) {
        try {
            m_row.AddItem(make());
        } catch (const std::bad_alloc&) {
            return;
        }
    }

    CellStore& m_cells;
    CTableRow m_row;
};

// The table that a query fills: one row for each jukebox, magazine, drive, slot, disc side or volume.
// Columns and sort order are chosen by one-letter identifiers. Its line width is that of the console.
class CKrvQueryTable : public COutputObject {
  public:
    CKrvQueryTable();

    // Chooses the columns, left to right. False when a letter is unknown; the known ones are set all the
    // same.
    bool SetColumnLetters(std::string_view letters);

    // Chooses the sort order. "-" makes the letters behind it descending, "+" ascending again. False when a
    // letter is unknown; the known ones are set all the same.
    bool SetSortLetters(std::string_view letters);

    // One row each. A cell for which there is no memory is left out of its row.
    void AddJukeboxRow(const krvcmd::JukeboxInfo& jukebox);
    void AddMagazineRow(const krvcmd::JukeboxInfo& jukebox, const MagazineKey& key,
                        const MagazineRecord& magazine);
    void AddDriveRow(const krvcmd::JukeboxInfo& jukebox, const DriveKey& key, const DriveRecord& drive);
    void AddSlotRow(const krvcmd::JukeboxInfo& jukebox, const SlotKey& key, const SlotRecord& slot);
    void AddSideRow(const krvcmd::JukeboxInfo& jukebox, const SideKey& key, const SideRecord& side,
                    const krvcmd::VolumeInfo& volume);
    void AddVolumeRow(const krvcmd::VolumeInfo& volume);

  private:
    CellStore m_cells;
};

}  // namespace Ostrel::UI::Console
