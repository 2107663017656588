#include "tools/journal/call_items.h"

#include <charconv>
#include <limits>

#include "embedded/store/statement.h"

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
    command.add_option("--side", options.side, "only calls for this side, A or B")->check(OneOf({"A", "B"}));
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

int32_t FindJukebox(Database& database, const std::string& word) {
    std::optional<int32_t> found;
    if (word.starts_with('@')) {
        int32_t id = 0;
        const char* end = word.data() + word.size();
        const auto result = std::from_chars(word.data() + 1, end, id);
        if (result.ec == std::errc() && result.ptr == end) {
            found = FindValue<int32_t>(database, "SELECT id FROM jukebox WHERE id = ?1", id);
        }
    } else {
        found = FindValue<int32_t>(database, "SELECT id FROM jukebox WHERE name = ?1 ORDER BY id", word);
    }
    if (!found.has_value()) {
        const bool isNumber = !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
        throw ToolFailure("there is no jukebox " + word +
                          (isNumber ? " (an ID is written @" + word + ")" : ""));
    }
    return *found;
}

}  // namespace embedded::tools
