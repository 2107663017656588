#include "embedded/service/arguments.h"

#include <algorithm>
#include <cstring>

#include "embedded/model/refusal.h"

namespace embedded {

void RefuseCall(const char* function, const std::string& reason) {
    throw Refuse(Code::InvalidCall, {function, reason});
}

void CheckConstant(bool isRight, const char* function, const char* name) {
    if (!isRight) RefuseCall(function, std::string("the ") + name + " has a value that is not allowed");
}

void CopyAspects(std::string_view list, char* buffer, uint32_t bufferSize, uint32_t& requiredSize) {
    requiredSize = static_cast<uint32_t>(list.size());
    if (list.size() <= bufferSize) std::ranges::copy(list, buffer);
}

void CopyLocations(std::span<const SideKey> places, SideKey* locations, uint32_t& count,
                   const char* function) {
    const auto total = static_cast<uint32_t>(places.size());
    const uint32_t room = std::min(std::max(count, 1U), total);
    for (uint32_t place = 0; place < room; ++place)
        CheckRecord(&locations[place], function, "location");
    std::ranges::copy(places.first(room), locations);
    count = total;
}

void CheckFormatOptions(const FormatOptions* options, const char* function) {
    CheckRecord(options, function, "options record");
    const void* end = std::memchr(options->label, '\0', sizeof(options->label));
    CheckConstant(end != nullptr, function, "label");
    CheckConstant(options->alwaysZero == 0, function, "field at 268");
}

}  // namespace embedded
