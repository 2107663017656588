#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include "krvcmd/console/output_object.h"
#include "krvcmd/console/table_dir_item.h"
#include "krvcmd/console/table_int_item.h"
#include "krvcmd/console/table_one_based_int_item.h"
#include "krvcmd/console/table_percent_int_item.h"
#include "krvcmd/console/table_string_item.h"
#include "krvcmd/service/item_info.h"

namespace Ostrel::UI::Console {

// The table that a query fills: one row for each jukebox, magazine, drive, slot, disc side or volume.
// Columns and sort order are chosen by one-letter identifiers. Its line width is that of the console.
class CKrvQueryTable : public COutputObject {
  public:
    CKrvQueryTable();

    // Explains the column identifiers on standard output.
    void PrintColumnHelp();

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
    void AddJukeboxIdentity(CTableRow& row, const krvcmd::JukeboxInfo& jukebox);
    void AddDevice(CTableRow& row, const DeviceIdentity& device);
    void AddMediaType(CTableRow& row, std::uint32_t mediumCode);
    void AddVolumeCells(CTableRow& row, const krvcmd::VolumeInfo& volume);

    void AddNumber(CTableRow& row, std::uint32_t columnId, std::int64_t value);
    void AddCapacity(CTableRow& row, std::uint32_t columnId, std::int64_t bytes);
    void AddOneBased(CTableRow& row, std::uint32_t columnId, std::int32_t zeroBasedNumber);
    void AddPercent(CTableRow& row, std::uint32_t columnId, std::int64_t free, std::int64_t total);
    void AddText(CTableRow& row, std::uint32_t columnId, std::string_view text);
    void AddDirectory(CTableRow& row, std::uint32_t columnId, std::string_view path);
    // A text out of a fixed set; all rows that show it share one cell.
    void AddFixedText(CTableRow& row, std::uint32_t columnId, std::string_view text);

    // Every cell that the table created; rows refer to them.
    std::deque<CTableIntItem> m_numbers;
    std::deque<CTableOneBasedIntItem> m_oneBasedNumbers;
    std::deque<CTablePercentIntItem> m_percents;
    std::deque<CTableStringItem> m_texts;
    std::deque<CTableDirItem> m_directories;
    std::deque<CTableStringItem> m_fixedTexts;
};

}  // namespace Ostrel::UI::Console
