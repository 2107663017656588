// How records of the client library become rows of the query table.

#include "krvcmd/console/column_catalogue.h"
#include "krvcmd/console/item_texts.h"
#include "krvcmd/console/query_table.h"
#include "krvcmd/console/row_builder.h"
#include "krvcmd/console/value_texts.h"
#include "krvcmd/service/record_text.h"

namespace Ostrel::UI::Console {

using krvcmd::JukeboxInfo;
using krvcmd::RecordText;
using krvcmd::VolumeInfo;

namespace {

// Room for the cells of each kind of row.
constexpr std::size_t kJukeboxCells = 10;
constexpr std::size_t kMagazineCells = 5;
constexpr std::size_t kDriveCells = 7;
constexpr std::size_t kSlotCells = 6;
constexpr std::size_t kVolumeCells = 11;
constexpr std::size_t kSideCells = kVolumeCells + 7;

void AddJukeboxIdentity(RowBuilder& row, const JukeboxInfo& jukebox) {
    row.Number(column_id::kJukeboxId, jukebox.key.jukeboxId);
    row.Text(column_id::kJukeboxName, RecordText(jukebox.record.name));
}

void AddDevice(RowBuilder& row, const DeviceIdentity& device) {
    row.FormattedText(column_id::kProduct, [&] { return FormatProduct(device); });
    row.Text(column_id::kRevision, RecordText(device.revision));
    row.FormattedText(column_id::kScsiAddress, [&] { return FormatScsiAddress(device); });
}

void AddMediaType(RowBuilder& row, std::uint32_t mediumCode) {
    if (mediumCode != kNoMediumCode) row.Word(column_id::kMediaType, MediaTypeText(mediumCode));
}

void AddVolumeCells(RowBuilder& row, const VolumeInfo& volume) {
    const VolumeRecord& record = volume.record;
    const auto total = static_cast<std::int64_t>(record.totalCapacity);
    const auto free = static_cast<std::int64_t>(record.freeCapacity);
    // The unsigned difference wraps around when more is free than there is; shown signed.
    const auto used = static_cast<std::int64_t>(record.totalCapacity - record.freeCapacity);
    row.Number(column_id::kVolumeId, volume.volumeId);
    row.Capacity(column_id::kTotalCapacity, total);
    row.Number(column_id::kTotalBytes, total);
    row.Capacity(column_id::kUsedCapacity, used);
    row.Number(column_id::kUsedBytes, used);
    row.Percent(column_id::kUsedPercent, free, total);
    row.Text(column_id::kLabel, RecordText(record.label));
    row.Text(column_id::kFileSystem, RecordText(record.fileSystem));
    row.Word(column_id::kStatus, VolumeStatusText(record.state));
    row.Word(column_id::kVolumeType, VolumeTypeText(record.type));
    if (!volume.aspects.empty()) row.Directory(column_id::kDirectory, volume.aspects.front());
}

}  // namespace

void CKrvQueryTable::AddJukeboxRow(const JukeboxInfo& jukebox) {
    const JukeboxRecord& record = jukebox.record;
    RowBuilder row(m_cells, kJukeboxCells, GetMemory());
    AddJukeboxIdentity(row, jukebox);
    AddDevice(row, record.identity);
    row.Word(column_id::kStatus, EnabledText(record.enabled));
    row.Word(column_id::kFlipper, DoubleSidedText(record.doubleSided));
    row.Number(column_id::kDriveCount, record.driveCount);
    row.Number(column_id::kMagazineCount, record.magazineCount);
    row.Number(column_id::kSlotCount, record.slotCount);
    AddRow(row.TakeRow());
}

void CKrvQueryTable::AddMagazineRow(const JukeboxInfo& jukebox, const MagazineKey& key,
                                    const MagazineRecord& magazine) {
    RowBuilder row(m_cells, kMagazineCells, GetMemory());
    AddJukeboxIdentity(row, jukebox);
    row.OneBasedNumber(column_id::kMagazine, key.magazine);
    if (magazine.slotCount != 0) row.Number(column_id::kSlotCount, magazine.slotCount);
    row.Word(column_id::kStatus, PresentText(magazine.present));
    AddRow(row.TakeRow());
}

void CKrvQueryTable::AddDriveRow(const JukeboxInfo& jukebox, const DriveKey& key, const DriveRecord& drive) {
    RowBuilder row(m_cells, kDriveCells, GetMemory());
    AddJukeboxIdentity(row, jukebox);
    AddDevice(row, drive.identity);
    row.OneBasedNumber(column_id::kDrive, key.drive);
    row.Word(column_id::kStatus, EnabledText(drive.enabled));
    AddRow(row.TakeRow());
}

void CKrvQueryTable::AddSlotRow(const JukeboxInfo& jukebox, const SlotKey& key, const SlotRecord& slot) {
    RowBuilder row(m_cells, kSlotCells, GetMemory());
    AddJukeboxIdentity(row, jukebox);
    if (HasSeveralMagazines(jukebox)) row.OneBasedNumber(column_id::kMagazine, key.magazine);
    row.OneBasedNumber(column_id::kSlot, key.slot);
    row.Word(column_id::kStatus, SlotStatusText(slot.state));
    AddMediaType(row, slot.mediumCode);
    AddRow(row.TakeRow());
}

void CKrvQueryTable::AddSideRow(const JukeboxInfo& jukebox, const SideKey& key, const SideRecord& side,
                                const VolumeInfo& volume) {
    RowBuilder row(m_cells, kSideCells, GetMemory());
    row.FormattedText(column_id::kLocation, [&] { return FormatLocation(jukebox, key); });
    AddVolumeCells(row, volume);
    if (HasSeveralMagazines(jukebox)) row.OneBasedNumber(column_id::kMagazine, key.magazine);
    row.OneBasedNumber(column_id::kSlot, key.slot);
    row.Word(column_id::kSide, SideText(key.side));
    row.Word(column_id::kRecordedState, RecordedStateText(side.state));
    AddMediaType(row, side.mediumCode);
    row.Word(column_id::kFinalization, FinalizationText(side.finalization));
    AddRow(row.TakeRow());
}

void CKrvQueryTable::AddVolumeRow(const VolumeInfo& volume) {
    RowBuilder row(m_cells, kVolumeCells, GetMemory());
    AddVolumeCells(row, volume);
    AddRow(row.TakeRow());
}

}  // namespace Ostrel::UI::Console
