#include "embedded/attached/scsi/report_luns.h"

namespace embedded::attached {
namespace {

constexpr size_t kListHeader = 8;
constexpr size_t kLun = 8;

// Single-level addresses have nothing behind their first two bytes.
std::optional<uint16_t> SingleLevel(BigEndianReader& reader, size_t at) {
    constexpr uint8_t kPeripheral = 0;
    constexpr uint8_t kFlat = 1;
    const uint8_t method = reader.GetBits(at, 7, 6);
    const uint8_t bus = reader.GetBits(at, 5, 0);
    const bool hasMoreLevels = reader.Get16(at + 2) != 0 || reader.Get32(at + 4) != 0;
    if (hasMoreLevels || method > kFlat || (method == kPeripheral && bus != 0)) return std::nullopt;
    return static_cast<uint16_t>(reader.Get16(at) & 0x3FFF);
}

}  // namespace

Cdb ReportLuns(uint32_t allocation) {
    return Cdb(kReportLuns).Put32(6, allocation);
}

Result<LunList> DecodeReportLuns(Bytes answer) {
    BigEndianReader reader(answer);
    LunList list;
    list.length = reader.Get32(0);
    if (!reader.IsComplete()) return ShortAnswer(kReportLuns, answer.size());
    if (list.length % kLun != 0) return BadAnswer(kReportLuns, "has a length that is no multiple of 8");
    for (size_t at = kListHeader; at - kListHeader < list.length && at + kLun <= answer.size(); at += kLun) {
        if (const auto lun = SingleLevel(reader, at)) list.luns.push_back(*lun);
    }
    return list;
}

}  // namespace embedded::attached
