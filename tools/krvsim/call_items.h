#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "embedded/journal/call_info.h"
#include "tools/common/command_line.h"
#include "tools/krvsim/farm_query.h"

namespace embedded::tools {

// The options that choose the item of a call: one-based numbers and IDs; what is not given is any.
struct ItemOptions {
    std::string jukebox;  // name, or "@" and ID
    std::optional<int32_t> magazine;
    std::optional<int32_t> slot;
    std::string side;  // "A" or "B"
    std::optional<int32_t> drive;
    std::optional<int32_t> volume;
};
void AddItemOptions(CLI::App& command, ItemOptions& options);

// An item has zero-based numbers, as in the database. Throws ToolFailure for an unknown jukebox.
Item ItemOf(const ItemOptions& options, Database& database);

// The item in six columns of a row: jukebox, magazine, slot, side, drive, volume.
Item ItemOf(const Row& row, int firstColumn);

// One-based, "jukebox 8, magazine 1, slot 3, side A"; empty for an item without a number.
std::string ItemText(const Item& item);

}  // namespace embedded::tools
