#include "embedded/attached/device/identity.h"

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

constexpr uint16_t kInquiryLength = 96;
constexpr uint16_t kPageLength = 1024;

// What a device that does not know a page answers, and one that answers with another page, is not an error:
// devices need not have these pages.
bool IsMissing(const Error& error) {
    return error.kind == ErrorKind::BadAnswer || (error.kind == ErrorKind::Refused && error.sense);
}

template <typename Page>
Result<Page> OrEmpty(Device& device, const Cdb& cdb, Result<Page> (*decode)(Bytes)) {
    const auto answer = device.Ask(cdb, kPageLength);
    if (!answer) {
        if (IsMissing(answer.GetError())) return Page();
        return answer.GetError();
    }
    auto page = decode(*answer);
    if (!page) return Page();
    return page;
}

}  // namespace

std::string Identity::GetModel() const {
    std::string model;
    for (const std::string* part : {&inquiry.vendor, &inquiry.product, &inquiry.revision}) {
        if (part->empty()) continue;
        if (!model.empty()) model += ' ';
        model += Printable(*part);
    }
    return model;
}

Result<Identity> ReadIdentity(Device& device) {
    const auto answer = device.Ask(Inquiry(kInquiryLength), kInquiryLength);
    if (!answer) return answer.GetError();
    auto inquiry = DecodeInquiry(*answer);
    if (!inquiry) return device.Named(inquiry.GetError());
    Identity identity{std::move(*inquiry), "", {}};
    auto serialNumber = OrEmpty(device, InquireSerialNumber(kPageLength), DecodeSerialNumber);
    if (!serialNumber) return serialNumber.GetError();
    identity.serialNumber = std::move(*serialNumber);
    auto designators = OrEmpty(device, InquireIdentification(kPageLength), DecodeIdentification);
    if (!designators) return designators.GetError();
    identity.designators = std::move(*designators);
    return identity;
}

}  // namespace embedded::attached
