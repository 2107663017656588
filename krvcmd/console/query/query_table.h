#pragma once

#include <string_view>

#include "krvcmd/console/table/cell_store.h"
#include "krvcmd/console/writer/output_object.h"
#include "krvcmd/service/sdk/records.h"

namespace Ostrel::UI::Console {

// The table that a query fills: one row for each jukebox, magazine, drive, slot, disc side or volume.
// One-letter identifiers choose columns and sort order. Its line width is that of the console.
class CKrvQueryTable : public COutputObject {
  public:
    CKrvQueryTable();

    // Chooses the columns, left to right. False when a letter is unknown; the known ones are set all the
    // same.
    bool SetColumnLetters(std::string_view letters);

    // Chooses the sort order. "-" makes the letters after it descending, "+" ascending again. False when a
    // letter is unknown; the known ones are set all the same.
    bool SetSortLetters(std::string_view letters);

    // Each adds one row; keys are zero-based. If memory for a cell runs out, the row lacks that cell.
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
