#include "embedded/attached/scsi/mode_pages.h"

#include <algorithm>

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

constexpr unsigned kNoBlockDescriptors = 0x08;
constexpr size_t kModePageHeader = 2;

// What the two forms of the command differ in.
struct Header {
    const Operation& operation;
    size_t size;
    size_t dataLength;   // what the device has behind the length field itself, and the length field
    size_t descriptors;  // bytes of block descriptors
    uint8_t mediumType;
    uint8_t deviceSpecific;
};

Result<ModeData> Decode(Bytes answer, uint8_t page, const Header& header) {
    const size_t end = std::min(answer.size(), header.dataLength);
    const size_t start = header.size + header.descriptors;
    if (start + kModePageHeader > end) return ShortAnswer(header.operation, answer.size());
    BigEndianReader reader(answer.subspan(start, end - start));
    const uint8_t given = reader.GetBits(0, 5, 0);
    if (given != page) {
        return BadAnswer(header.operation,
                         "holds mode page " + HexText(given, 2) + " instead of " + HexText(page, 2));
    }
    const Bytes content = reader.GetBytes(0, kModePageHeader + reader.Get8(1));
    return ModeData{header.mediumType, (header.deviceSpecific & 0x80) != 0, content};
}

Error BadPage(uint8_t page, const std::string& what) {
    return {ErrorKind::BadAnswer, "mode page " + HexText(page, 2) + " " + what, {}};
}

Error ShortPage(uint8_t page, size_t size) {
    return BadPage(page, "is too short, it has " + std::to_string(size) + " bytes");
}

}  // namespace

Cdb ModeSense6(uint8_t page, uint8_t allocation) {
    return Cdb(kModeSense6).Put8(1, kNoBlockDescriptors).Put8(2, page).Put8(4, allocation);
}

Cdb ModeSense10(uint8_t page, uint16_t allocation) {
    return Cdb(kModeSense10).Put8(1, kNoBlockDescriptors).Put8(2, page).Put16(7, allocation);
}

Result<ModeHeader> DecodeModeHeader6(Bytes answer) {
    constexpr size_t kHeader = 4;
    BigEndianReader reader(answer);
    const ModeHeader header{reader.Get8(1), reader.GetBit(2, 7)};
    if (answer.size() < kHeader) return ShortAnswer(kModeSense6, answer.size());
    return header;
}

Result<ModeData> DecodeModeSense6(Bytes answer, uint8_t page) {
    BigEndianReader reader(answer);
    const Header header{kModeSense6,   4, size_t{1} + reader.Get8(0), reader.Get8(3), reader.Get8(1),
                        reader.Get8(2)};
    if (!reader.IsComplete()) return ShortAnswer(kModeSense6, answer.size());
    return Decode(answer, page, header);
}

Result<ModeData> DecodeModeSense10(Bytes answer, uint8_t page) {
    BigEndianReader reader(answer);
    const Header header{kModeSense10,  8, size_t{2} + reader.Get16(0), reader.Get16(6), reader.Get8(2),
                        reader.Get8(3)};
    if (!reader.IsComplete()) return ShortAnswer(kModeSense10, answer.size());
    return Decode(answer, page, header);
}

Result<ElementAddresses> DecodeElementAddresses(Bytes page) {
    BigEndianReader reader(page);
    const auto range = [&](size_t at) { return ElementRange{reader.Get16(at), reader.Get16(at + 2)}; };
    const ElementAddresses addresses{range(2), range(6), range(10), range(14)};
    if (!reader.IsComplete()) return ShortPage(kElementAddressPage, page.size());
    const std::array ranges{addresses.pickers, addresses.slots, addresses.mailSlots, addresses.drives};
    for (size_t i = 0; i < ranges.size(); ++i) {
        const ElementRange& one = ranges[i];
        if (one.count == 0) continue;
        if (one.first + one.count > 0x10000) {
            return BadPage(kElementAddressPage, "names elements behind address 65535");
        }
        const bool isShared =
            std::any_of(ranges.begin(), ranges.begin() + static_cast<ptrdiff_t>(i), [&](const auto& other) {
                return other.count != 0 && other.first < one.first + one.count &&
                       one.first < other.first + other.count;
            });
        if (isShared)
            return BadPage(kElementAddressPage, "names the same element twice, with different types");
    }
    return addresses;
}

Result<bool> DecodeTurnsMedia(Bytes page) {
    if (page.size() < kModePageHeader) return ShortPage(kTransportGeometryPage, page.size());
    for (size_t at = kModePageHeader; at + 1 < page.size(); at += 2) {
        if ((page[at] & 0x01) != 0) return true;
    }
    return false;
}

Result<ChangerCapabilities> DecodeCapabilities(Bytes page) {
    BigEndianReader reader(page);
    ChangerCapabilities capabilities;
    capabilities.stores = reader.GetBits(2, 3, 0);
    for (size_t from = 0; from < 4; ++from) {
        capabilities.moves[from] = reader.GetBits(4 + from, 3, 0);
        capabilities.exchanges[from] = reader.GetBits(12 + from, 3, 0);
    }
    if (!reader.IsComplete()) return ShortPage(kDeviceCapabilitiesPage, page.size());
    return capabilities;
}

}  // namespace embedded::attached
