#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "embedded/store/statement.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// The item that a call names, with the zero-based numbers of its key, as far as the key can be read and sets
// them.
struct Item {
    std::optional<int64_t> jukebox;
    std::optional<int64_t> magazine;
    std::optional<int64_t> slot;
    std::optional<int64_t> side;
    std::optional<int64_t> drive;
    std::optional<int64_t> volume;
    // The text that came with the call: a server, a new name, a label.
    const char* text = "";
};

// Which call a caller made, and of what: for the journal, and for the faults that a farm may have.
struct CallInfo {
    const char* function;
    Item item;
};

Item ItemOf(const JukeboxKey* key);
Item ItemOf(const MagazineKey* key);
Item ItemOf(const DriveKey* key);
Item ItemOf(const SlotKey* key);
Item ItemOf(const SideKey* key);
Item VolumeItem(uint32_t volume);
// The same item with a text; null stands for none.
Item WithText(Item item, const char* text);

// From the next six columns of a row: jukebox, magazine, slot, side, drive, volume.
Item ReadItem(Statement& row);

// The names of the 31 functions.
std::span<const std::string_view> FunctionNames();

// The name of the function that the word means, with or without "Krv" and in any case of letters;
// empty when it means none.
std::string_view FindFunction(std::string_view word);

}  // namespace embedded
