#include "embedded/attached/scsi/capacity.h"

namespace embedded::attached {
namespace {

constexpr unsigned kReadCapacity16Action = 0x10;

Result<Capacity> Checked(const Operation& operation, const Capacity& capacity) {
    if (capacity.blockSize == 0) return BadAnswer(operation, "names blocks of 0 bytes");
    return capacity;
}

}  // namespace

Cdb ReadCapacity10() {
    return Cdb(kReadCapacity10);
}

Result<Capacity> DecodeCapacity10(Bytes answer) {
    BigEndianReader reader(answer);
    const Capacity capacity{reader.Get32(0), reader.Get32(4)};
    if (!reader.IsComplete()) return ShortAnswer(kReadCapacity10, answer.size());
    return Checked(kReadCapacity10, capacity);
}

Cdb ReadCapacity16(uint32_t allocation) {
    return Cdb(kReadCapacity16).Put8(1, kReadCapacity16Action).Put32(10, allocation);
}

Result<Capacity> DecodeCapacity16(Bytes answer) {
    BigEndianReader reader(answer);
    const Capacity capacity{reader.Get64(0), reader.Get32(8)};
    if (!reader.IsComplete()) return ShortAnswer(kReadCapacity16, answer.size());
    return Checked(kReadCapacity16, capacity);
}

Cdb ReadFormatCapacities(uint16_t allocation) {
    return Cdb(kReadFormatCapacities).Put16(7, allocation);
}

Result<FormatCapacities> DecodeFormatCapacities(Bytes answer) {
    constexpr size_t kHeader = 4;
    constexpr size_t kDescriptor = 8;
    BigEndianReader reader(answer);
    const size_t length = reader.Get8(3);
    FormatCapacities capacities;
    capacities.blocks = reader.Get32(4);
    const uint8_t state = reader.GetBits(8, 1, 0);
    capacities.blockSize = reader.Get24(9);
    if (!reader.IsComplete()) return ShortAnswer(kReadFormatCapacities, answer.size());
    if (length == 0 || length % kDescriptor != 0) {
        return BadAnswer(kReadFormatCapacities, "has a length that is no multiple of 8");
    }
    if (state == 0) return BadAnswer(kReadFormatCapacities, "has no state of the medium");
    capacities.state = static_cast<FormatState>(state);
    for (size_t at = kHeader + kDescriptor; at < kHeader + length && at + kDescriptor <= answer.size();
         at += kDescriptor) {
        capacities.choices.push_back({reader.Get32(at), reader.GetBits(at + 4, 7, 2), reader.Get24(at + 5)});
    }
    return capacities;
}

}  // namespace embedded::attached
