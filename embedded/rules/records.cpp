#include "embedded/rules/records.h"

#include <algorithm>

#include "embedded/model/media_types.h"

namespace embedded {
namespace {

constexpr uint32_t kSideUnknown = 0;
constexpr uint32_t kSideNotPresent = 1;
constexpr uint32_t kSideScanFailed = 2;
constexpr auto kSideBad = static_cast<uint32_t>(Content::Bad);

// Fills a text field of a record that is all zero; it is cut to leave room for the NUL.
template <size_t Size>
void FillText(char (&field)[Size], std::string_view text) {
    text.copy(field, Size - 1);
}

// Vendor, product, revision and the SCSI address stand in this order from `column` on.
void FillIdentity(DeviceIdentity& identity, const Rows& rows, int column) {
    FillText(identity.vendor, rows.Text(column));
    FillText(identity.product, rows.Text(column + 1));
    FillText(identity.revision, rows.Text(column + 2));
    for (int component = 0; component < 3; ++component) {
        identity.scsiAddress[component] = rows.Number(column + 3 + component);
    }
}

}  // namespace

JukeboxRecord DescribeJukebox(const Rows& rows) {
    JukeboxRecord record{};
    record.size = sizeof(record);
    FillText(record.name, rows.Text(0));
    record.enabled = rows.Flag(1) ? 1 : 0;
    record.doubleSided = rows.Flag(2) ? 1 : 0;
    FillIdentity(record.identity, rows, 3);
    record.driveCount = rows.Number(9);
    record.magazineCount = rows.Number(10);
    record.slotCount = rows.Number(11);
    return record;
}

DriveRecord DescribeDrive(const Rows& rows) {
    DriveRecord record{};
    record.size = sizeof(record);
    record.enabled = rows.Flag(0) ? 1 : 0;
    FillIdentity(record.identity, rows, 1);
    record.libraryValue1 = static_cast<uint64_t>(rows.Integer(7));
    record.libraryValue2 = static_cast<uint64_t>(rows.Integer(8));
    return record;
}

VolumeRecord DescribeVolume(const Rows& rows) {
    VolumeRecord record{};
    record.size = sizeof(record);
    record.type = rows.Unsigned(1);
    record.state = rows.Unsigned(2);
    FillText(record.fileSystem, rows.Text(4));
    FillText(record.label, rows.Text(5));
    record.totalCapacity = static_cast<uint64_t>(rows.Integer(6));
    record.freeCapacity = static_cast<uint64_t>(rows.Integer(7));
    record.libraryValue1 = rows.Number(8);
    record.libraryValue2 = rows.Unsigned(9);
    return record;
}

SideRecord DescribeSide(SlotState slot, const std::optional<MediumView>& medium,
                        const std::optional<SideView>& side) {
    SideRecord record{};
    record.size = sizeof(record);
    record.state = slot == SlotState::ScanFailed ? kSideScanFailed : kSideUnknown;
    record.mediumCode = medium.has_value() ? medium->type : kNoMedium;
    if (!medium.has_value()) return record;
    if (!side.has_value()) {
        record.state = kSideNotPresent;
        return record;
    }
    record.volumeId = std::max(side->volume, 0);
    if (slot != SlotState::Full) return record;
    record.state = static_cast<uint32_t>(side->content);
    record.finalization = static_cast<uint32_t>(side->finalization);
    return record;
}

bool IsUnreadable(const SideRecord& record) {
    return record.state == kSideBad;
}

}  // namespace embedded
