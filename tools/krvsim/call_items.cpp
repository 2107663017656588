#include "tools/krvsim/call_items.h"

#include <limits>

namespace embedded::tools {
namespace {

std::optional<int64_t> ZeroBased(const std::optional<int32_t>& number) {
    return number.has_value() ? std::optional<int64_t>(*number - 1) : std::nullopt;
}

}  // namespace

void AddItemOptions(CLI::App& command, ItemOptions& options) {
    const CLI::Validator numbers = FromTo(1, std::numeric_limits<int32_t>::max());
    command.add_option("--jukebox,-J", options.jukebox, "only calls for this jukebox, by name or as @ID");
    command.add_option("--magazine,-M", options.magazine, "only calls for this magazine")->check(numbers);
    command.add_option("--slot,-S", options.slot, "only calls for this slot")->check(numbers);
    command.add_option("--side", options.side, "only calls for this side, A or B")
        ->check(CLI::IsMember({"A", "B"}).description(""));
    command.add_option("--drive,-D", options.drive, "only calls for this drive")->check(numbers);
    command.add_option("--volume,-V", options.volume, "only calls for this volume or the slot of its medium")
        ->check(numbers);
}

Item ItemOf(const ItemOptions& options, Database& database) {
    Item item;
    if (!options.jukebox.empty()) item.jukebox = FindJukebox(database, options.jukebox);
    item.magazine = ZeroBased(options.magazine);
    item.slot = ZeroBased(options.slot);
    if (!options.side.empty()) item.side = options.side == "A" ? 0 : 1;
    item.drive = ZeroBased(options.drive);
    item.volume = options.volume;
    return item;
}

Item ItemOf(const Row& row, int firstColumn) {
    Item item;
    item.jukebox = row.Optional(firstColumn);
    item.magazine = row.Optional(firstColumn + 1);
    item.slot = row.Optional(firstColumn + 2);
    item.side = row.Optional(firstColumn + 3);
    item.drive = row.Optional(firstColumn + 4);
    item.volume = row.Optional(firstColumn + 5);
    return item;
}

std::string ItemText(const Item& item) {
    std::string text;
    const auto add = [&](const std::string& word) {
        if (!text.empty()) text += ", ";
        text += word;
    };
    if (item.jukebox.has_value()) add("jukebox " + std::to_string(*item.jukebox));
    if (item.magazine.has_value()) add("magazine " + std::to_string(*item.magazine + 1));
    if (item.slot.has_value()) add("slot " + std::to_string(*item.slot + 1));
    if (item.side == 0) add("side A");
    if (item.side == 1) add("side B");
    if (item.drive.has_value()) add("drive " + std::to_string(*item.drive + 1));
    if (item.volume.has_value()) add("volume " + std::to_string(*item.volume));
    return text;
}

}  // namespace embedded::tools
