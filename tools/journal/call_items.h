#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "embedded/journal/call_info.h"
#include "embedded/store/database.h"
#include "tools/common/command_line.h"

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

// One-based, "jukebox 8, magazine 1, slot 3, side A"; empty for an item without a number.
std::string ItemText(const Item& item);

// The jukebox that a user names, by its name or by "@" and its ID; throws a ToolFailure when there is none.
int32_t FindJukebox(Database& database, const std::string& word);

}  // namespace embedded::tools
