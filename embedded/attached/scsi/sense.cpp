#include "embedded/attached/scsi/sense.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace embedded::attached {
namespace {

constexpr uint8_t kCurrentFixed = 0x70;
constexpr uint8_t kDeferredFixed = 0x71;
constexpr uint8_t kCurrentDescriptors = 0x72;
constexpr uint8_t kDeferredDescriptors = 0x73;
constexpr size_t kSenseHeader = 8;

// The sense key specific bytes are a progress indication with NOT READY and NO SENSE only.
bool TellsProgress(uint8_t key) {
    return key == sense_key::kNotReady || key == sense_key::kNoSense;
}

// The three sense key specific bytes at `at`.
std::optional<uint16_t> ProgressAt(BigEndianReader& reader, size_t at, uint8_t key) {
    if (!TellsProgress(key) || reader.GetSize() < at + 3 || !reader.GetBit(at, 7)) return std::nullopt;
    return reader.Get16(at + 1);
}

// What follows byte 7, as far as the data say and as far as they go.
size_t EndOf(BigEndianReader& reader) {
    return std::min(reader.GetSize(),
                    reader.GetSize() < kSenseHeader ? reader.GetSize() : kSenseHeader + reader.Get8(7));
}

Sense DecodeFixed(Bytes data) {
    BigEndianReader whole(data);
    BigEndianReader reader(data.first(EndOf(whole)));
    Sense sense;
    sense.code.key = reader.GetBits(2, 3, 0);
    if (reader.GetBit(0, 7) && reader.GetSize() >= 7) sense.information = reader.Get32(3);
    // Data that end here have neither code nor qualifier: both read as zero.
    sense.code.asc = reader.Get8(12);
    sense.code.ascq = reader.Get8(13);
    sense.progress = ProgressAt(reader, 15, sense.code.key);
    return sense;
}

Sense DecodeDescriptors(Bytes data) {
    constexpr uint8_t kInformation = 0x00;
    constexpr uint8_t kSenseKeySpecific = 0x02;
    BigEndianReader whole(data);
    Sense sense;
    sense.code = {whole.GetBits(1, 3, 0), whole.Get8(2), whole.Get8(3)};
    const size_t end = EndOf(whole);
    size_t at = kSenseHeader;
    while (at + 2 <= end) {
        const size_t length = size_t{2} + data[at + 1];
        if (length > end - at) break;
        BigEndianReader reader(data.subspan(at, length));
        const uint8_t type = reader.Get8(0);
        if (type == kInformation && length >= 12 && reader.GetBit(2, 7)) sense.information = reader.Get64(4);
        if (type == kSenseKeySpecific) sense.progress = ProgressAt(reader, 4, sense.code.key);
        at += length;
    }
    return sense;
}

}  // namespace

std::optional<Sense> DecodeSense(Bytes data) {
    if (data.size() < 4) return std::nullopt;
    const auto format = static_cast<uint8_t>(data[0] & 0x7F);
    std::optional<Sense> sense;
    if (format == kCurrentFixed || format == kDeferredFixed) sense = DecodeFixed(data);
    if (format == kCurrentDescriptors || format == kDeferredDescriptors) sense = DecodeDescriptors(data);
    if (sense) sense->isDeferred = format == kDeferredFixed || format == kDeferredDescriptors;
    return sense;
}

std::string SenseText(const SenseCode& code) {
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), "%X/%02X/%02X", unsigned{code.key}, unsigned{code.asc},
                        unsigned{code.ascq});
    return text.data();
}

}  // namespace embedded::attached
