#include "krvcmd/console/query/column_catalogue.h"

#include <algorithm>
#include <array>

namespace Ostrel::UI::Console {
namespace {

constexpr ColumnInfo kNoColumn{0, "", "", 0, 0, ""};

constexpr std::array<ColumnInfo, 26> kColumns{{
    // clang-format off
    {column_id::kSlotCount,     "S", "Slots",        0,  0, "Number of slots in magazine or jukebox."},
    {column_id::kDriveCount,    "D", "Drives",       0,  0, "Number of drives in the jukebox."},
    {column_id::kMagazineCount, "M", "Magazines",    0,  0, "Number of magazines in the jukebox."},
    {column_id::kVolumeId,      "I", "Vol ID",       0,  0, "Unique identifier of the volume."},
    {column_id::kJukeboxId,     "J", "Jbx ID",       0,  0, "Unique identifier of the jukebox."},
    {column_id::kJukeboxName,   "N", "Jukebox",      0,  0, "Name of the jukebox."},
    {column_id::kLocation,      "L", "Location",     10, 0, "Formatted location of a disc in a jukebox."},
    {column_id::kMagazine,      "m", "Magazine",     0,  0, "Number of the magazine."},
    {column_id::kDrive,         "d", "Drive",        0,  0, "Number of the drive."},
    {column_id::kSlot,          "s", "Slot",         0,  0, "Number of the slot."},
    {column_id::kSide,          "a", "Side",         0,  0, "Identifies the disc side (A or B)."},
    {column_id::kScsiAddress,   "C", "SCSI Address", 0,  0, "SCSI address of the jukebox or drive."},
    {column_id::kRevision,      "R", "Revision",     0,  0, "Firmware revision of jukebox or drive."},
    {column_id::kProduct,       "P", "Product",      0,  0, "Device type (product and vendor ID) of jukebox or drive."},
    {column_id::kFlipper,       "F", "Flipper",      0,  0, "Shows if the jukebox supports double sided media."},
    {column_id::kDirectory,     "n", "Directory",    10, 40, "Shows the directory name for this volume (even if not active)."},
    {column_id::kLabel,         "l", "Label",        0,  0, "Volume label of the volume."},
    {column_id::kVolumeType,    "v", "Volume Type",  0,  0, "Volume Type (Volume Set container or optical disc)."},
    {column_id::kFileSystem,    "f", "File System",  11, 0, "Type of the file system on the volume."},
    {column_id::kMediaType,     "t", "Type",         0,  0, "Media type of a disc."},
    {column_id::kUsedCapacity,  "x", "Used Capa",    0,  0, "Used capacity on a volume with dimension (MByte, GByte, ...)."},
    {column_id::kUsedBytes,     "X", "Used Capa",    0,  0, "Used capacity in bytes without dimension."},
    {column_id::kUsedPercent,   "z", "Used Capa",    0,  0, "Used capacity in per cent from total capacity."},
    {column_id::kTotalCapacity, "y", "Total Capa",   0,  0, "Total capacity on a volume with dimension."},
    {column_id::kTotalBytes,    "Y", "Total Capa",   0,  0, "Total capacity in bytes without dimension."},
    {column_id::kStatus,        "o", "Status",       0,  0, "Status of the item."},
    // clang-format on
}};

}  // namespace

std::span<const ColumnInfo> GetColumnCatalogue() {
    return kColumns;
}

const ColumnInfo& FindColumnInfo(std::string_view letter) {
    const auto* const found = std::ranges::find(kColumns, letter, &ColumnInfo::letter);
    return found == kColumns.end() ? kNoColumn : *found;
}

CTableColumn MakeColumn(std::string_view letter) {
    const ColumnInfo& info = FindColumnInfo(letter);
    CTableColumn column;
    column.SetColumnId(info.columnId);
    column.SetTitle(info.title);
    // After the title, which resets the minimum.
    column.SetMinWidth(info.minWidth);
    column.SetMaxWidth(info.maxWidth);
    column.SetHidesSign(info.columnId == column_id::kUsedPercent);
    return column;
}

}  // namespace Ostrel::UI::Console

namespace krvcmd {
namespace {

constexpr std::array<QueryObjectInfo, 5> kObjects{{
    // clang-format off
    {QueryObject::Jukeboxes, "jukeboxes", "JNoDMSFPCR",    "oNJ"},
    {QueryObject::Magazines, "magazines", "NmoC",          "NJm"},
    {QueryObject::Slots,     "slots",     "NmsaIotnfzylv", "NJms"},
    {QueryObject::Drives,    "drives",    "NdoPCR",        "NJd"},
    {QueryObject::Volumes,   "volumes",   "ILotnfzylv",    "NJmsalfv"},
    // clang-format on
}};

}  // namespace

std::span<const QueryObjectInfo> QueryObjects() {
    return kObjects;
}

}  // namespace krvcmd
