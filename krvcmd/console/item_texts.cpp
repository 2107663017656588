#include "krvcmd/console/item_texts.h"

#include <cstdint>
#include <string_view>

#include "krvcmd/console/decimal_text.h"
#include "krvcmd/console/value_texts.h"
#include "krvcmd/service/record_text.h"

namespace Ostrel::UI::Console {

namespace {

void AppendOneBased(std::string& text, std::int32_t zeroBasedNumber) {
    text += DecimalText(std::int64_t{zeroBasedNumber} + 1).View();
}

}  // namespace

std::string FormatLocation(const krvcmd::JukeboxInfo& jukebox, const SideKey& key) {
    std::string location(krvcmd::RecordText(jukebox.record.name));
    location += '\\';
    if (HasSeveralMagazines(jukebox)) {
        AppendOneBased(location, key.magazine);
        location += '\\';
    }
    AppendOneBased(location, key.slot);
    return location.append(1, '.').append(SideText(key.side));
}

std::string FormatScsiAddress(const DeviceIdentity& device) {
    std::string address;
    for (const std::int32_t component : device.scsiAddress) {
        if (!address.empty()) address += '/';
        address += DecimalText(component).View();
    }
    return address;
}

std::string FormatProduct(const DeviceIdentity& device) {
    const std::string_view vendor = krvcmd::RecordText(device.vendor);
    std::string product(vendor.substr(0, vendor.find_last_not_of(' ') + 1));
    if (!product.empty()) product += ' ';
    return product.append(krvcmd::RecordText(device.product));
}

bool HasSeveralMagazines(const krvcmd::JukeboxInfo& jukebox) {
    return jukebox.record.magazineCount > 1;
}

}  // namespace Ostrel::UI::Console
