#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// Checks of what a caller passes to a function of the client library. Each refuses the call with code 1000.

[[noreturn]] void RefuseCall(const char* function, const std::string& reason);

// A key or a record of the caller's: there, and of the size that this library knows.
template <typename Record>
void CheckRecord(const Record* record, const char* function, const char* name) {
    if (record == nullptr) RefuseCall(function, std::string("the ") + name + " is missing");
    if (record->size == sizeof(Record)) return;
    RefuseCall(function, std::string("the ") + name + " has size " + std::to_string(record->size) + ", not " +
                             std::to_string(sizeof(Record)));
}

template <typename Value>
void CheckPointer(const Value* value, const char* function, const char* name) {
    if (value == nullptr) RefuseCall(function, std::string("the ") + name + " is missing");
}

void CheckConstant(bool isRight, const char* function, const char* name);

// What KrvVolumeAspects answers: a buffer that is too small is left alone.
void CopyAspects(std::string_view list, char* buffer, uint32_t bufferSize, uint32_t& requiredSize);

// What KrvVolumeLocations answers. A caller that asks for the first time passes one element and count 0; for
// the second time, as many elements as the count of the first call says.
void CopyLocations(std::span<const SideKey> places, SideKey* locations, uint32_t& count,
                   const char* function);

// The options of KrvVolumeFormat.
void CheckFormatOptions(const FormatOptions* options, const char* function);

}  // namespace embedded
