#pragma once

#include <cstdint>
#include <vector>

#include "krvcmd/console/query/query_table.h"
#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/access/slot_iterator.h"
#include "krvcmd/service/sdk/keys.h"
#include "krvcmd/service/sdk/records.h"

namespace krvcmd {

// Looks items up and adds one row for each to a query table. Nothing is cached: every look-up asks
// the library.
class QueryWalks {
  public:
    enum class SlotRows { Add, LeaveOut };

    // The table is not owned and must outlive this object.
    explicit QueryWalks(Ostrel::UI::Console::CKrvQueryTable& table) : m_table(table) {}

    // Whether slots that hold no readable disc get a row of their own (a query of volumes leaves
    // them out).
    void SetSlotRows(SlotRows slotRows) { m_slotRows = slotRows; }

    // One jukebox, or all of them with an ID below 1; ends at the first that cannot be described.
    Status ListJukeboxes(int32_t jukeboxId);

    // All magazines. One that cannot be described does not end the walk; the last failure is the
    // result.
    Status ListMagazines(int32_t jukeboxId);

    // All drives; each drive's result replaces the one before. System error 2: there is none.
    Status ListDrives(int32_t jukeboxId);

    Status ListDrive(const DriveKey& key);

    // The volumes on the sides of a full slot, or the slot itself. Empty slots are never listed. A side that
    // cannot be read (code 3) is no error.
    Status ListSlot(const SlotPosition& position);

    // One row for each location of the volume, or one without location. All locations are shown in the
    // jukebox of the key, or with kNoJukebox in that of the first location, even if they are in others.
    Status ListVolume(const JukeboxKey& jukeboxKey, int32_t volumeId);

    // Every volume the service knows; ends at the first that fails.
    Status ListAllVolumes();

    static constexpr JukeboxKey kNoJukebox{sizeof(JukeboxKey), kUnset};

  private:
    Status ListSide(const SideKey& key);
    Status ListVolumeAt(int32_t jukeboxId, const SideKey& location, const VolumeInfo& volume);

    Ostrel::UI::Console::CKrvQueryTable& m_table;
    SlotRows m_slotRows = SlotRows::Add;
    // The volume being listed. Members, so that each volume reuses the memory of the one before.
    VolumeInfo m_volume;
    std::vector<SideKey> m_locations;
};

}  // namespace krvcmd
