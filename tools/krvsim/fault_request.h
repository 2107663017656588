#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/store/database.h"
#include "krvcmd/service/sdk/krv_sdk.h"
#include "tools/journal/call_items.h"

namespace embedded::tools {

// The function of a fault that affects every one, in the database.
inline constexpr const char* kAnyFunction = "*";

// Of the text of a fault, in bytes.
inline constexpr size_t kMaxTextLength = sizeof(KrvErrorInfo::text) - 1;

// A fault as a user describes it.
struct FaultRequest {
    std::string function;  // "any" = every one
    ItemOptions item;
    int64_t nth = 1;               // the first matching call that fails or waits, one-based
    std::optional<int64_t> times;  // how many do; nothing = all
    double probability = 1;
    int64_t seed = 1;
    std::optional<int32_t> code;
    std::string text;
    std::string delay;  // a number and ms, s or m
};

// The full name of a function, "*" for "any". Throws ToolFailure for an unknown one.
std::string FunctionOf(const std::string& word);

// Throws UsageFailure for a fault that has no effect, and for a mistake in its parts.
void RequireValid(const FaultRequest& fault);

// Returns the ID of the fault. The caller has opened a transaction.
int64_t AddFaultTo(Database& database, const FaultRequest& fault);

// The faults of a preset such as "door-open", of a file with one fault on each line, or of one such line:
//   MediaExport jukebox @29 nth 2 times 1 code 7 text "The door is open."
// Throws ToolFailure, for a file with the number of the line.
std::vector<FaultRequest> ReadFaults(const std::string& word);

// "door-open, drive-dead, ..."
std::string PresetNames();

}  // namespace embedded::tools
