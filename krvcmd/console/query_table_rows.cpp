// How records of the client library become rows of the query table.

#include <algorithm>
#include <new>

#include "krvcmd/console/column_catalogue.h"
#include "krvcmd/console/item_texts.h"
#include "krvcmd/console/query_table.h"
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

// Lets `create` make a cell and adds it to the row. When there is no memory for the cell, the row goes
// without it.
template <typename Create>
void AddCell(CTableRow& row, Create create) {
    try {
        const CTableItem& cell = create();
        row.AddItem(cell);
    } catch (const std::bad_alloc&) {
        return;
    }
}

}  // namespace

void CKrvQueryTable::AddJukeboxRow(const JukeboxInfo& jukebox) {
    const JukeboxRecord& record = jukebox.record;
    CTableRow row(kJukeboxCells);
    AddJukeboxIdentity(row, jukebox);
    AddDevice(row, record.identity);
    AddFixedText(row, column_id::kStatus, EnabledText(record.enabled));
    AddFixedText(row, column_id::kFlipper, DoubleSidedText(record.doubleSided));
    AddNumber(row, column_id::kDriveCount, record.driveCount);
    AddNumber(row, column_id::kMagazineCount, record.magazineCount);
    AddNumber(row, column_id::kSlotCount, record.slotCount);
    AddRow(std::move(row));
}

void CKrvQueryTable::AddMagazineRow(const JukeboxInfo& jukebox, const MagazineKey& key,
                                    const MagazineRecord& magazine) {
    CTableRow row(kMagazineCells);
    AddJukeboxIdentity(row, jukebox);
    AddOneBased(row, column_id::kMagazine, key.magazine);
    if (magazine.slotCount != 0) AddNumber(row, column_id::kSlotCount, magazine.slotCount);
    AddFixedText(row, column_id::kStatus, PresentText(magazine.present));
    AddRow(std::move(row));
}

void CKrvQueryTable::AddDriveRow(const JukeboxInfo& jukebox, const DriveKey& key, const DriveRecord& drive) {
    CTableRow row(kDriveCells);
    AddJukeboxIdentity(row, jukebox);
    AddDevice(row, drive.identity);
    AddOneBased(row, column_id::kDrive, key.drive);
    AddFixedText(row, column_id::kStatus, EnabledText(drive.enabled));
    AddRow(std::move(row));
}

void CKrvQueryTable::AddSlotRow(const JukeboxInfo& jukebox, const SlotKey& key, const SlotRecord& slot) {
    CTableRow row(kSlotCells);
    AddJukeboxIdentity(row, jukebox);
    if (HasSeveralMagazines(jukebox)) AddOneBased(row, column_id::kMagazine, key.magazine);
    AddOneBased(row, column_id::kSlot, key.slot);
    AddFixedText(row, column_id::kStatus, SlotStatusText(slot.state));
    AddMediaType(row, slot.mediumCode);
    AddRow(std::move(row));
}

void CKrvQueryTable::AddSideRow(const JukeboxInfo& jukebox, const SideKey& key, const SideRecord& side,
                                const VolumeInfo& volume) {
    CTableRow row(kSideCells);
    AddCell(row, [&]() -> CTableItem& {
        return m_texts.emplace_back(column_id::kLocation, FormatLocation(jukebox, key));
    });
    AddVolumeCells(row, volume);
    if (HasSeveralMagazines(jukebox)) AddOneBased(row, column_id::kMagazine, key.magazine);
    AddOneBased(row, column_id::kSlot, key.slot);
    AddFixedText(row, column_id::kSide, SideText(key.side));
    AddFixedText(row, column_id::kRecordedState, RecordedStateText(side.state));
    AddMediaType(row, side.mediumCode);
    AddFixedText(row, column_id::kFinalization, FinalizationText(side.finalization));
    AddRow(std::move(row));
}

void CKrvQueryTable::AddVolumeRow(const VolumeInfo& volume) {
    CTableRow row(kVolumeCells);
    AddVolumeCells(row, volume);
    AddRow(std::move(row));
}

void CKrvQueryTable::AddJukeboxIdentity(CTableRow& row, const JukeboxInfo& jukebox) {
    AddNumber(row, column_id::kJukeboxId, jukebox.key.jukeboxId);
    AddText(row, column_id::kJukeboxName, RecordText(jukebox.record.name));
}

void CKrvQueryTable::AddDevice(CTableRow& row, const DeviceIdentity& device) {
    AddCell(row, [&]() -> CTableItem& {
        return m_texts.emplace_back(column_id::kProduct, FormatProduct(device));
    });
    AddText(row, column_id::kRevision, RecordText(device.revision));
    AddCell(row, [&]() -> CTableItem& {
        return m_texts.emplace_back(column_id::kScsiAddress, FormatScsiAddress(device));
    });
}

void CKrvQueryTable::AddMediaType(CTableRow& row, std::uint32_t mediumCode) {
    if (mediumCode == kNoMediumCode) return;
    AddFixedText(row, column_id::kMediaType, MediaTypeText(mediumCode));
}

void CKrvQueryTable::AddVolumeCells(CTableRow& row, const VolumeInfo& volume) {
    const VolumeRecord& record = volume.record;
    const auto total = static_cast<std::int64_t>(record.totalCapacity);
    const auto free = static_cast<std::int64_t>(record.freeCapacity);
    // The unsigned difference wraps around when more is free than there is; shown signed.
    const auto used = static_cast<std::int64_t>(record.totalCapacity - record.freeCapacity);
    AddNumber(row, column_id::kVolumeId, volume.volumeId);
    AddCapacity(row, column_id::kTotalCapacity, total);
    AddNumber(row, column_id::kTotalBytes, total);
    AddCapacity(row, column_id::kUsedCapacity, used);
    AddNumber(row, column_id::kUsedBytes, used);
    AddPercent(row, column_id::kUsedPercent, free, total);
    AddText(row, column_id::kLabel, RecordText(record.label));
    AddText(row, column_id::kFileSystem, RecordText(record.fileSystem));
    AddFixedText(row, column_id::kStatus, VolumeStatusText(record.state));
    AddFixedText(row, column_id::kVolumeType, VolumeTypeText(record.type));
    if (!volume.aspects.empty()) AddDirectory(row, column_id::kDirectory, volume.aspects.front());
}

void CKrvQueryTable::AddNumber(CTableRow& row, std::uint32_t columnId, std::int64_t value) {
    AddCell(row,
            [&]() -> CTableItem& { return m_numbers.emplace_back(columnId, value, NumberStyle::Plain); });
}

void CKrvQueryTable::AddCapacity(CTableRow& row, std::uint32_t columnId, std::int64_t bytes) {
    AddCell(row,
            [&]() -> CTableItem& { return m_numbers.emplace_back(columnId, bytes, NumberStyle::WithUnit); });
}

void CKrvQueryTable::AddOneBased(CTableRow& row, std::uint32_t columnId, std::int32_t zeroBasedNumber) {
    AddCell(row, [&]() -> CTableItem& { return m_oneBasedNumbers.emplace_back(columnId, zeroBasedNumber); });
}

void CKrvQueryTable::AddPercent(CTableRow& row, std::uint32_t columnId, std::int64_t free,
                                std::int64_t total) {
    AddCell(row, [&]() -> CTableItem& { return m_percents.emplace_back(columnId, free, total); });
}

void CKrvQueryTable::AddText(CTableRow& row, std::uint32_t columnId, std::string_view text) {
    AddCell(row, [&]() -> CTableItem& { return m_texts.emplace_back(columnId, text); });
}

void CKrvQueryTable::AddDirectory(CTableRow& row, std::uint32_t columnId, std::string_view path) {
    AddCell(row, [&]() -> CTableItem& { return m_directories.emplace_back(columnId, path); });
}

void CKrvQueryTable::AddFixedText(CTableRow& row, std::uint32_t columnId, std::string_view text) {
    AddCell(row, [&]() -> CTableItem& {
        const auto found = std::find_if(
            m_fixedTexts.begin(), m_fixedTexts.end(),
            [&](const CTableItem& cell) { return cell.GetColumnId() == columnId && cell.GetText() == text; });
        return found != m_fixedTexts.end() ? *found : m_fixedTexts.emplace_back(columnId, text);
    });
}

}  // namespace Ostrel::UI::Console
