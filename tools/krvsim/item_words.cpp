#include "tools/krvsim/item_words.h"

namespace embedded::tools {

Item ItemOfRow(const Row& row, int column) {
    Item item;
    item.jukebox = row.Optional(column);
    item.magazine = row.Optional(column + 1);
    item.slot = row.Optional(column + 2);
    item.side = row.Optional(column + 3);
    item.drive = row.Optional(column + 4);
    item.volume = row.Optional(column + 5);
    return item;
}

std::string ItemWords(const Item& item, const char* nothing) {
    std::string words;
    const auto add = [&](const std::string& word) {
        if (!words.empty()) words += ", ";
        words += word;
    };
    if (item.jukebox.has_value()) add("jukebox " + std::to_string(*item.jukebox));
    if (item.magazine.has_value()) add("magazine " + std::to_string(*item.magazine + 1));
    if (item.slot.has_value()) add("slot " + std::to_string(*item.slot + 1));
    if (item.side == 0) add("side A");
    if (item.side == 1) add("side B");
    if (item.drive.has_value()) add("drive " + std::to_string(*item.drive + 1));
    if (item.volume.has_value()) add("volume " + std::to_string(*item.volume));
    return words.empty() ? nothing : words;
}

}  // namespace embedded::tools
