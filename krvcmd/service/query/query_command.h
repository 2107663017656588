#pragma once

#include <cstdint>
#include <string>

#include "krvcmd/commands/base/command.h"
#include "krvcmd/commands/base/worker.h"
#include "krvcmd/console/query/column_catalogue.h"
#include "krvcmd/console/query/query_table.h"
#include "krvcmd/service/query/query_walks.h"

namespace krvcmd {

// Prints a table about jukeboxes, magazines, drives, slots or volumes. Rows gathered before a
// failure are still shown.
class CQuery : public CCommand, public CWorker {
  public:
    CQuery();

    Status ParseOptions() override;
    Status Run() override;

    // Lists one slot.
    Status Work(const SlotPosition& position) override;

  private:
    // A text option and whether it was given.
    struct TextOption {
        bool given = false;
        std::string text;

        std::string OrElse(std::string_view byDefault) const { return given ? text : std::string(byDefault); }
    };

    void ReadText(std::string_view name, TextOption& option) const;

    // The first object given in the order of QueryObjects; null when none is.
    const QueryObjectInfo* ChosenObject() const;

    // Chooses the rows and prints them.
    Status Query(const QueryObjectInfo& info, int32_t jukeboxId);

    // System error 22 when a column or sort letter is unknown.
    Status ConfigureTable(const QueryObjectInfo& info);

    Status Gather(QueryObject object, int32_t jukeboxId);
    Status GatherMagazines(int32_t jukeboxId);
    Status GatherDrives(int32_t jukeboxId);
    Status GatherSlotsOrVolumes(QueryObject object, int32_t jukeboxId);
    Status GatherEntry(const ItemAddress& entry);
    Status WalkSlots(const ItemAddress& address);

    // Items that a query of jukeboxes, magazines or drives takes as "no address".
    bool AddressesAllJukeboxes() const {
        return Kind() == AddressKind::None || Kind() == AddressKind::Volumes;
    }

    bool m_configuration = false;
    bool m_detectSequence = false;
    bool m_notable = false;
    bool m_hasWidth = false;
    int32_t m_width = 0;
    TextOption m_columns;
    TextOption m_sort;
    TextOption m_separator;
    TextOption m_filter;
    Ostrel::UI::Console::CKrvQueryTable m_table;
    QueryWalks m_walks;
};

}  // namespace krvcmd
