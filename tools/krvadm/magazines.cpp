#include "tools/krvadm/magazines.h"

#include <charconv>
#include <numeric>
#include <string_view>

#include "tools/common/streams.h"

namespace embedded::tools {
namespace {

constexpr uint32_t kMostElements = 65'535;

uint32_t NumberIn(std::string_view text, const std::string& whole) {
    uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number == 0 || number > kMostElements) {
        throw UsageFailure("--magazines: \"" + whole + "\" is not of the form 4x25 or 10,2x25");
    }
    return number;
}

}  // namespace

std::vector<uint32_t> ParseMagazines(const std::string& text) {
    std::vector<uint32_t> sizes;
    std::string_view rest = text;
    while (true) {
        const std::string_view part = rest.substr(0, rest.find(','));
        const size_t times = part.find('x');
        const bool isRepeated = times != std::string_view::npos;
        const uint32_t count = isRepeated ? NumberIn(part.substr(0, times), text) : 1;
        const uint32_t size = NumberIn(isRepeated ? part.substr(times + 1) : part, text);
        sizes.insert(sizes.end(), count, size);
        if (part.size() == rest.size()) return sizes;
        rest.remove_prefix(part.size() + 1);
    }
}

std::vector<std::vector<uint16_t>> DivideIntoMagazines(const std::vector<uint16_t>& slots,
                                                       const std::vector<uint32_t>& sizes) {
    std::vector<std::vector<uint16_t>> magazines;
    if (sizes.empty()) {
        for (const uint16_t slot : slots) {
            if (magazines.empty() || magazines.back().back() + 1 != slot) magazines.emplace_back();
            magazines.back().push_back(slot);
        }
        return magazines;
    }
    const uint64_t total = std::accumulate(sizes.begin(), sizes.end(), uint64_t{0});
    if (total != slots.size()) {
        throw ToolFailure("the magazines have " + std::to_string(total) + " slots in all, the changer has " +
                          std::to_string(slots.size()));
    }
    auto next = slots.begin();
    for (const uint32_t size : sizes) {
        magazines.emplace_back(next, next + size);
        next += size;
    }
    return magazines;
}

}  // namespace embedded::tools
