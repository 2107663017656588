#include "embedded/attached/scsi/inquiry.h"

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

constexpr uint8_t kSerialNumberPage = 0x80;
constexpr uint8_t kIdentificationPage = 0x83;
constexpr size_t kInquiryPageHeader = 4;

Cdb InquirePage(uint8_t page, uint16_t allocation) {
    constexpr unsigned kVitalProductData = 1;
    return Cdb(kInquiry).Put8(1, kVitalProductData).Put8(2, page).Put16(3, allocation);
}

// What follows the header of a vital product data page: as much as came of what the page says it has.
Result<Bytes> PageContent(Bytes answer, uint8_t page) {
    BigEndianReader reader(answer);
    const uint8_t given = reader.Get8(1);
    const uint16_t length = reader.Get16(2);
    if (!reader.IsComplete()) return ShortAnswer(kInquiry, answer.size());
    if (given != page) {
        return BadAnswer(kInquiry, "is page " + HexText(given, 2) + " instead of " + HexText(page, 2));
    }
    return reader.GetBytes(kInquiryPageHeader, length);
}

}  // namespace

Cdb Inquiry(uint16_t allocation) {
    return Cdb(kInquiry).Put16(3, allocation);
}

Result<InquiryData> DecodeInquiry(Bytes answer) {
    BigEndianReader reader(answer);
    InquiryData data;
    data.qualifier = reader.GetBits(0, 7, 5);
    data.type = static_cast<DeviceType>(reader.GetBits(0, 4, 0));
    data.isRemovable = reader.GetBit(1, 7);
    data.vendor = reader.GetText(8, 8);
    data.product = reader.GetText(16, 16);
    data.revision = reader.GetText(32, 4);
    if (!reader.IsComplete()) return ShortAnswer(kInquiry, answer.size());
    return data;
}

Cdb InquireSerialNumber(uint16_t allocation) {
    return InquirePage(kSerialNumberPage, allocation);
}

Result<std::string> DecodeSerialNumber(Bytes answer) {
    const auto content = PageContent(answer, kSerialNumberPage);
    if (!content) return content.GetError();
    return BigEndianReader(*content).GetText(0, content->size());
}

Cdb InquireIdentification(uint16_t allocation) {
    return InquirePage(kIdentificationPage, allocation);
}

Result<std::vector<Designator>> DecodeIdentification(Bytes answer) {
    const auto content = PageContent(answer, kIdentificationPage);
    if (!content) return content.GetError();
    std::vector<Designator> designators;
    size_t at = 0;
    while (at < content->size()) {
        BigEndianReader reader(content->subspan(at));
        Designator designator;
        designator.codeSet = reader.GetBits(0, 3, 0);
        designator.association = reader.GetBits(1, 5, 4);
        designator.type = reader.GetBits(1, 3, 0);
        const uint8_t length = reader.Get8(3);
        const Bytes bytes = reader.GetBytes(4, length);
        if (!reader.IsComplete()) return BadAnswer(kInquiry, "has an identifier that reaches behind its end");
        designator.bytes.assign(bytes.begin(), bytes.end());
        designators.push_back(std::move(designator));
        at += size_t{4} + length;
    }
    return designators;
}

}  // namespace embedded::attached
