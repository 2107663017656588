#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "krvcmd/console/table/table.h"

namespace Ostrel::UI::Console {

// The ids of the query table's columns.
namespace column_id {
inline constexpr uint32_t kJukeboxName = 1;
inline constexpr uint32_t kVolumeId = 2;
inline constexpr uint32_t kStatus = 3;
inline constexpr uint32_t kMediaType = 4;
inline constexpr uint32_t kJukeboxId = 5;
inline constexpr uint32_t kMagazine = 6;
inline constexpr uint32_t kSlot = 7;
inline constexpr uint32_t kSide = 8;
inline constexpr uint32_t kLocation = 9;
inline constexpr uint32_t kFileSystem = 10;
inline constexpr uint32_t kUsedCapacity = 11;
inline constexpr uint32_t kUsedPercent = 12;
inline constexpr uint32_t kTotalCapacity = 13;
inline constexpr uint32_t kDirectory = 14;
inline constexpr uint32_t kLabel = 15;
inline constexpr uint32_t kVolumeType = 16;
inline constexpr uint32_t kSlotCount = 17;
inline constexpr uint32_t kDriveCount = 18;
inline constexpr uint32_t kDrive = 19;
inline constexpr uint32_t kMagazineCount = 20;
inline constexpr uint32_t kFlipper = 21;
inline constexpr uint32_t kProduct = 22;
inline constexpr uint32_t kRevision = 23;
inline constexpr uint32_t kScsiAddress = 24;
inline constexpr uint32_t kTotalBytes = 25;
inline constexpr uint32_t kUsedBytes = 26;
// No letter selects these two: rows have cells for them, which are never shown.
inline constexpr uint32_t kFinalization = 27;
inline constexpr uint32_t kRecordedState = 28;
}  // namespace column_id

// One column of the query table.
struct ColumnInfo {
    uint32_t columnId;
    std::string_view letter;  // one character; empty in the row for an unknown letter
    std::string_view title;
    int32_t minWidth;  // 0: none
    int32_t maxWidth;  // 0: none
    std::string_view description;
};

// The 26 columns in the order in which the help lists them.
std::span<const ColumnInfo> GetColumnCatalogue();

// The column of exactly that letter, case-sensitive; for anything else an empty row, whose id is 0.
const ColumnInfo& FindColumnInfo(std::string_view letter);

// A column as the catalogue describes it; its id is 0 when the letter is unknown.
CTableColumn MakeColumn(std::string_view letter);

}  // namespace Ostrel::UI::Console

namespace krvcmd {

enum class QueryObject { Jukeboxes, Magazines, Slots, Drives, Volumes };

// What a query of one object shows by default, in column letters.
struct QueryObjectInfo {
    QueryObject object;
    std::string_view keyword;
    std::string_view defaultColumns;
    std::string_view defaultSort;
};

// In the order of precedence when the command line names several.
std::span<const QueryObjectInfo> QueryObjects();

}  // namespace krvcmd
