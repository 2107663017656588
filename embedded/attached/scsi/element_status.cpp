#include "embedded/attached/scsi/element_status.h"

#include <algorithm>

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

constexpr size_t kReportHeader = 8;
constexpr size_t kStatusPageHeader = 8;
constexpr size_t kSmallestDescriptor = 12;
constexpr size_t kVolumeTag = 36;
constexpr size_t kVolumeTagText = 32;
constexpr size_t kIdentifierHeader = 4;
constexpr size_t kMostMissing = 8;

// An element status page (SMC-3, 6.10.3), apart from its descriptors.
struct PageHeader {
    uint8_t type = 0;
    bool hasPrimaryTags = false;
    bool hasAlternateTags = false;
    size_t descriptorLength = 0;
    size_t byteCount = 0;

    // Where the identifier of a drive begins within a descriptor.
    size_t IdentifierOffset() const {
        return kSmallestDescriptor + (hasPrimaryTags ? kVolumeTag : 0) + (hasAlternateTags ? kVolumeTag : 0);
    }
};

Error BadReport(const std::string& what) {
    return BadAnswer(kReadElementStatus, what);
}

Result<PageHeader> DecodePageHeader(Bytes bytes, const ElementQuery& query) {
    BigEndianReader reader(bytes);
    const PageHeader header{reader.Get8(0), reader.GetBit(1, 7), reader.GetBit(1, 6), reader.Get16(2),
                            reader.Get24(5)};
    if (header.type != static_cast<uint8_t>(query.type)) {
        return BadReport("holds elements of type " + std::to_string(header.type) + " instead of " +
                         std::to_string(static_cast<unsigned>(query.type)));
    }
    if (header.descriptorLength < header.IdentifierOffset()) {
        return BadReport("has " + std::to_string(header.descriptorLength) +
                         " bytes for each element, fewer than its flags need");
    }
    if (header.byteCount % header.descriptorLength != 0) {
        return BadReport("has a page that ends within an element");
    }
    return header;
}

// `descriptor` has the length that the page names, its last bytes are zero when they did not come; `received`
// did.
Result<DriveIdentifier> DecodeIdentifier(Bytes descriptor, size_t received, size_t offset) {
    BigEndianReader reader(descriptor);
    DriveIdentifier identifier;
    identifier.codeSet = reader.GetBits(offset, 3, 0);
    identifier.type = reader.GetBits(offset + 1, 3, 0);
    const size_t start = offset + kIdentifierHeader;
    const size_t end = start + reader.Get8(offset + 3);
    if (end > descriptor.size()) return BadReport("has a drive identifier that reaches behind its element");
    identifier.isCut = end > received;
    const Bytes bytes = reader.GetBytes(start, std::max(start, std::min(end, received)) - start);
    identifier.bytes.assign(bytes.begin(), bytes.end());
    return identifier;
}

Result<Element> DecodeElement(Bytes descriptor, size_t received, const PageHeader& header,
                              const ElementQuery& query) {
    BigEndianReader reader(descriptor);
    Element element;
    element.type = query.type;
    element.address = reader.Get16(0);
    element.isFull = reader.GetBit(2, 0);
    element.wasPutByOperator = query.type == ElementType::MailSlot && reader.GetBit(2, 1);
    element.isException = reader.GetBit(2, 2);
    element.isAccessible = reader.GetBit(2, 3);
    element.asc = reader.Get8(4);
    element.ascq = reader.Get8(5);
    if (reader.GetBit(9, 7)) {
        element.source = reader.Get16(10);
        element.isInverted = reader.GetBit(9, 6);
    }
    if (header.hasPrimaryTags) element.volumeTag = reader.GetText(kSmallestDescriptor, kVolumeTagText);
    const size_t offset = header.IdentifierOffset();
    const bool canHaveIdentifier = query.type == ElementType::Drive && query.wantsDriveIdentifiers;
    if (canHaveIdentifier && descriptor.size() >= offset + kIdentifierHeader &&
        reader.Get8(offset + 3) != 0) {
        auto identifier = DecodeIdentifier(descriptor, received, offset);
        if (!identifier) return identifier.GetError();
        element.driveIdentifier = std::move(*identifier);
    }
    return element;
}

// The descriptors of one page. `isCut`: the answer ends before the report does.
Result<Nothing> DecodePage(Bytes descriptors, bool isCut, const PageHeader& header, const ElementQuery& query,
                           std::vector<Element>& elements) {
    const size_t length = header.descriptorLength;
    std::vector<uint8_t> padded(length);
    for (size_t at = 0; at < header.byteCount; at += length) {
        const Bytes left = descriptors.subspan(std::min(at, descriptors.size()));
        const Bytes received = left.first(std::min(length, left.size()));
        const size_t missing = length - received.size();
        if (missing > 0 && isCut) return Nothing();
        if (missing > std::min(kMostMissing, length - kSmallestDescriptor + 2)) {
            return BadReport("promises more elements than it holds");
        }
        std::ranges::fill(padded, uint8_t{0});
        std::ranges::copy(received, padded.begin());
        auto element = DecodeElement(padded, received.size(), header, query);
        if (!element) return element.GetError();
        elements.push_back(std::move(*element));
    }
    return Nothing();
}

}  // namespace

Cdb InitializeElementStatus() {
    return Cdb(kInitializeElementStatus);
}

Cdb InitializeElementStatus(uint16_t first, uint16_t count) {
    constexpr unsigned kRange = 1;
    return Cdb(kInitializeElementRange).Put8(1, kRange).Put16(2, first).Put16(6, count);
}

const char* NameOf(ElementType type) {
    switch (type) {
        case ElementType::Picker:
            return "picker";
        case ElementType::Slot:
            return "slot";
        case ElementType::MailSlot:
            return "mail slot";
        case ElementType::Drive:
            break;
    }
    return "drive";
}

Cdb ReadElementStatus(const ElementQuery& query) {
    constexpr unsigned kVolumeTags = 0x10;
    constexpr unsigned kDeviceIdentifiers = 0x01;
    return Cdb(kReadElementStatus)
        .Put8(1, (query.wantsVolumeTags ? kVolumeTags : 0) | static_cast<unsigned>(query.type))
        .Put16(2, query.first)
        .Put16(4, query.count)
        .Put8(6, query.wantsDriveIdentifiers ? kDeviceIdentifiers : 0)
        .Put24(7, query.allocation);
}

Result<ElementReport> DecodeElementStatus(Bytes answer, const ElementQuery& query) {
    BigEndianReader reader(answer);
    const size_t end = kReportHeader + reader.Get24(5);
    if (!reader.IsComplete()) return ShortAnswer(kReadElementStatus, answer.size());
    ElementReport report;
    // An answer that ends early although there was room is one that the device has ended itself.
    report.isWhole = answer.size() >= end || answer.size() < query.allocation;
    const Bytes content = answer.first(std::min(answer.size(), end));
    size_t at = kReportHeader;
    while (at < content.size()) {
        const Bytes rest = content.subspan(at);
        if (rest.size() < kStatusPageHeader) {
            if (report.isWhole) return BadReport("ends within the header of a page");
            break;
        }
        const auto header = DecodePageHeader(rest, query);
        if (!header) return header.GetError();
        const Bytes descriptors =
            rest.subspan(kStatusPageHeader, std::min(header->byteCount, rest.size() - kStatusPageHeader));
        const auto decoded = DecodePage(descriptors, !report.isWhole, *header, query, report.elements);
        if (!decoded) return decoded.GetError();
        at += kStatusPageHeader + header->byteCount;
    }
    return report;
}

}  // namespace embedded::attached
