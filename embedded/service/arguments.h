#pragma once

#include <string>

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

// The options of KrvVolumeFormat.
void CheckFormatOptions(const FormatOptions* options, const char* function);

}  // namespace embedded
