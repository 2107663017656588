#include "embedded/attached/changer/geometry.h"

#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

constexpr uint8_t kAllocation = 0xFF;

bool IsRefused(const Error& error) {
    return error.sense && error.sense->key == sense_key::kIllegalRequest;
}

// A mode page by the short command, or by the long one where the device does not know the short one.
Result<std::vector<uint8_t>> ReadModePage(Device& device, uint8_t page) {
    constexpr uint8_t kUnknownCommand = 0x20;
    auto answer = device.Ask(ModeSense6(page, kAllocation), kAllocation);
    const bool isUnknown =
        !answer && IsRefused(answer.GetError()) && answer.GetError().sense->asc == kUnknownCommand;
    if (isUnknown) answer = device.Ask(ModeSense10(page, kAllocation), kAllocation);
    if (!answer) return answer.GetError();
    const auto data = isUnknown ? DecodeModeSense10(*answer, page) : DecodeModeSense6(*answer, page);
    if (!data) return device.Named(data.GetError());
    return std::vector<uint8_t>(data->page.begin(), data->page.end());
}

// A page that the device need not have: nothing when it has not.
template <typename Value>
Result<std::optional<Value>> ReadOptionalPage(Device& device, uint8_t page, Result<Value> (*decode)(Bytes)) {
    const auto bytes = ReadModePage(device, page);
    if (!bytes) {
        if (IsRefused(bytes.GetError())) return std::optional<Value>();
        return bytes.GetError();
    }
    auto value = decode(*bytes);
    if (!value) return device.Named(value.GetError());
    return std::optional<Value>(*value);
}

}  // namespace

const ElementRange& Geometry::RangeOf(ElementType type) const {
    switch (type) {
        case ElementType::Picker:
            return addresses.pickers;
        case ElementType::Slot:
            return addresses.slots;
        case ElementType::MailSlot:
            return addresses.mailSlots;
        case ElementType::Drive:
            break;
    }
    return addresses.drives;
}

Result<Geometry> ReadGeometry(Device& changer) {
    const auto page = ReadModePage(changer, kElementAddressPage);
    if (!page) return page.GetError();
    const auto addresses = DecodeElementAddresses(*page);
    if (!addresses) return changer.Named(addresses.GetError());
    const auto turnsMedia = ReadOptionalPage(changer, kTransportGeometryPage, DecodeTurnsMedia);
    if (!turnsMedia) return turnsMedia.GetError();
    const auto capabilities = ReadOptionalPage(changer, kDeviceCapabilitiesPage, DecodeCapabilities);
    if (!capabilities) return capabilities.GetError();
    return Geometry{*addresses, turnsMedia->value_or(false), *capabilities};
}

}  // namespace embedded::attached
