#include "krvcmd/console/query/value_texts.h"

#include <algorithm>
#include <array>
#include <span>

namespace Ostrel::UI::Console {
namespace {

constexpr std::array<std::string_view, 5> kSlotStatus{"unknown", "not present", "scan failed", "slot empty",
                                                      "slot full"};

constexpr std::array<std::string_view, 3> kVolumeStatus{"active", "disabled", "offline"};

constexpr std::array<std::string_view, 3> kVolumeType{"Disc", "Mirror", "Volume Set"};

// "Blank Side," ends in a comma on purpose.
constexpr std::array<std::string_view, 7> kRecordedState{
    "Unknown.",    "Not present.",   "Scan failed.",        "Bad Side.",
    "Blank Side,", "No Filesystem.", "Contains Filesystem."};

constexpr std::array<std::string_view, 4> kFinalization{"Unknown.", "Not finalized.", "Finalized.",
                                                        "Closed."};

struct MediaType {
    uint32_t code;
    std::string_view text;
};

constexpr std::array<MediaType, 23> kMediaTypes{{
    {0, "CD-ROM"},          {1, "CD-R"},
    {2, "CD-RW"},           {4, "DVD-ROM"},
    {5, "DVD-R"},           {6, "DVD-RW"},
    {7, "DVD-Row"},         {9, "DVD+R"},
    {10, "DVD+RW"},         {12, "DVD-RAM"},
    {13, "DVD-RAM WO"},     {16, "DVD-R DL"},
    {17, "DVD+R DL"},       {20, "MO Rewritable"},
    {21, "MO Write Once"},  {22, "PDD Rewritable"},
    {23, "PDD Write Once"}, {24, "UDO Rewritable"},
    {25, "UDO Write Once"}, {26, "BD-RE"},
    {27, "BD-R"},           {254, "<unknown>"},
    {255, "<no disc>"},
}};

std::string_view TextAt(std::span<const std::string_view> texts, uint32_t index,
                        std::string_view otherwise = {}) {
    return index < texts.size() ? texts[index] : otherwise;
}

int64_t OneBased(int32_t zeroBasedNumber) {
    return int64_t{zeroBasedNumber} + 1;
}

}  // namespace

std::string_view EnabledText(uint32_t enabled) {
    return enabled != 0 ? "active" : "disabled";
}

std::string_view PresentText(uint32_t present) {
    return present != 0 ? "available" : "n/a";
}

std::string_view DoubleSidedText(uint32_t doubleSided) {
    return doubleSided != 0 ? "yes" : "no";
}

std::string_view SideText(int32_t side) {
    return side == 1 ? "B" : "A";
}

std::string_view SlotStatusText(uint32_t state) {
    return TextAt(kSlotStatus, state);
}

std::string_view VolumeStatusText(uint32_t state) {
    return TextAt(kVolumeStatus, state, "unknown");
}

std::string_view VolumeTypeText(uint32_t type) {
    return TextAt(kVolumeType, type);
}

std::string_view RecordedStateText(uint32_t state) {
    return TextAt(kRecordedState, state);
}

std::string_view FinalizationText(uint32_t state) {
    return TextAt(kFinalization, state);
}

std::string_view MediaTypeText(uint32_t code) {
    const auto* const found = std::ranges::find(kMediaTypes, code, &MediaType::code);
    return found == kMediaTypes.end() ? std::string_view() : found->text;
}

bool HasSeveralMagazines(const krvcmd::JukeboxInfo& jukebox) {
    return jukebox.record.magazineCount > 1;
}

LocationText FormatLocation(const krvcmd::JukeboxInfo& jukebox, const SideKey& key) {
    LocationText location;
    location.Append(krvcmd::RecordText(jukebox.record.name));
    location.Append("\\");
    if (HasSeveralMagazines(jukebox)) {
        location.AppendNumber(OneBased(key.magazine));
        location.Append("\\");
    }
    location.AppendNumber(OneBased(key.slot));
    location.Append(".");
    location.Append(SideText(key.side));
    return location;
}

std::string FormatScsiAddress(const DeviceIdentity& device) {
    ShortText<64> address;
    for (const int32_t component : device.scsiAddress) {
        if (!address.View().empty()) address.Append("/");
        address.AppendNumber(component);
    }
    return std::string(address.View());
}

std::string FormatProduct(const DeviceIdentity& device) {
    const std::string_view vendor = krvcmd::RecordText(device.vendor);
    std::string product(vendor.substr(0, vendor.find_last_not_of(' ') + 1));
    if (!product.empty()) product += ' ';
    return product.append(krvcmd::RecordText(device.product));
}

}  // namespace Ostrel::UI::Console
