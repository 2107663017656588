#include "tools/expectations/facts.h"

#include <algorithm>

#include "embedded/model/farm_words.h"

namespace embedded::tools {
namespace {

template <typename Items, typename Value, typename Member>
auto FindBy(const Items& items, const Value& value, Member member) -> decltype(&items.front()) {
    const auto found = std::ranges::find(items, value, member);
    return found == items.end() ? nullptr : &*found;
}

}  // namespace

const FarmJukebox* FindJukebox(const Farm& farm, const std::string& word) {
    const auto byId = [&](const std::string& digits) -> const FarmJukebox* {
        const bool isNumber = !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
        if (!isNumber || digits.size() > 9) return nullptr;
        return FindBy(farm.jukeboxes, std::stoi(digits), &FarmJukebox::id);
    };
    if (word.starts_with('@')) return byId(word.substr(1));
    const FarmJukebox* named = FindBy(farm.jukeboxes, word, &FarmJukebox::name);
    return named != nullptr ? named : byId(word);
}

const FarmMagazine* FindMagazine(const FarmJukebox& jukebox, int64_t number) {
    if (number < 1 || number > std::ssize(jukebox.magazines)) return nullptr;
    return &jukebox.magazines[static_cast<size_t>(number - 1)];
}

const FarmMedium* FindMedium(const FarmMagazine& magazine, int64_t slot) {
    return FindBy(magazine.media, slot, &FarmMedium::slot);
}

const FarmVolume* FindVolume(const Farm& farm, int64_t id) {
    return FindBy(farm.volumes, id, &FarmVolume::id);
}

std::string SlotStateText(const FarmMagazine& magazine, int64_t slot) {
    const FarmSlot* odd = FindBy(magazine.oddSlots, slot, &FarmSlot::number);
    const bool isFull = FindMedium(magazine, slot) != nullptr;
    const SlotState state = odd != nullptr ? odd->state : (isFull ? SlotState::Full : SlotState::Empty);
    return std::string(WordOf(SlotStateWords(), static_cast<int32_t>(state)));
}

}  // namespace embedded::tools
