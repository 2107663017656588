#include "embedded/attached/discovery/sysfs.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>
#include <string_view>

namespace embedded::attached {
namespace {

namespace fs = std::filesystem;

constexpr int kDisk = 0;
constexpr int kOptical = 5;
constexpr int kOpticalMemory = 7;
constexpr int kChanger = 8;

std::optional<int> ReadNumber(const fs::path& file) {
    std::ifstream in(file);
    int number = 0;
    if (in >> number) return number;
    return std::nullopt;
}

// 3 for "sg3".
std::optional<int> NumberOf(const std::string& name) {
    constexpr std::string_view kPrefix = "sg";
    if (!name.starts_with(kPrefix)) return std::nullopt;
    int number = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, failure] = std::from_chars(name.data() + kPrefix.size(), end, number);
    return failure == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// The one name in a folder such as device/block.
std::string OnlyEntry(const fs::path& folder) {
    std::error_code failure;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, failure))
        return entry.path().filename().string();
    return "";
}

bool IsOfInterest(int type, const fs::path& device, const std::string& block) {
    if (type == kOptical || type == kOpticalMemory || type == kChanger) return true;
    return type == kDisk && !block.empty() && ReadNumber(device / "block" / block / "removable") == 1;
}

}  // namespace

std::vector<LocalDevice> ListLocalDevices(const std::filesystem::path& sysfs) {
    std::vector<std::pair<int, LocalDevice>> found;
    std::error_code failure;
    for (const fs::directory_entry& entry : fs::directory_iterator(sysfs / "class/scsi_generic", failure)) {
        const std::string name = entry.path().filename().string();
        const auto number = NumberOf(name);
        const fs::path device = entry.path() / "device";
        const auto type = ReadNumber(device / "type");
        const std::string block = OnlyEntry(device / "block");
        if (!number || !type || !IsOfInterest(*type, device, block)) continue;
        found.push_back({*number, {"/dev/" + name, block.empty() ? "" : "/dev/" + block}});
    }
    std::ranges::sort(found, {}, &std::pair<int, LocalDevice>::first);
    std::vector<LocalDevice> devices;
    devices.reserve(found.size());
    for (auto& [number, device] : found)
        devices.push_back(std::move(device));
    return devices;
}

}  // namespace embedded::attached
