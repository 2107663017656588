#include "embedded/model/farm_words.h"

#include <algorithm>

#include "embedded/model/media_types.h"

namespace embedded {
namespace {

constexpr Word kContents[] = {
    {static_cast<int32_t>(Content::Bad), "bad"},
    {static_cast<int32_t>(Content::Blank), "blank"},
    {static_cast<int32_t>(Content::NoFileSystem), "no file system"},
    {static_cast<int32_t>(Content::FileSystem), "file system"},
};

constexpr Word kFinalizations[] = {
    {static_cast<int32_t>(Finalization::Unknown), "unknown"},
    {static_cast<int32_t>(Finalization::NotFinalized), "not finalized"},
    {static_cast<int32_t>(Finalization::Finalized), "finalized"},
    {static_cast<int32_t>(Finalization::Closed), "closed"},
};

constexpr Word kVolumeTypes[] = {
    {static_cast<int32_t>(VolumeType::Disc), "disc"},
    {static_cast<int32_t>(VolumeType::Mirror), "mirror"},
    {static_cast<int32_t>(VolumeType::VolumeSet), "volume set"},
};

constexpr Word kSlotStates[] = {
    {static_cast<int32_t>(SlotState::Unknown), "unknown"},
    {static_cast<int32_t>(SlotState::NotPresent), "not present"},
    {static_cast<int32_t>(SlotState::ScanFailed), "scan failed"},
    {static_cast<int32_t>(SlotState::Empty), "empty"},
    {static_cast<int32_t>(SlotState::Full), "full"},
};

}  // namespace

std::span<const Word> ContentWords() {
    return kContents;
}
std::span<const Word> FinalizationWords() {
    return kFinalizations;
}
std::span<const Word> VolumeTypeWords() {
    return kVolumeTypes;
}
std::span<const Word> SlotStateWords() {
    return kSlotStates;
}

std::optional<int32_t> ValueOf(std::span<const Word> words, std::string_view word) {
    const auto found = std::ranges::find(words, word, &Word::word);
    if (found == words.end()) return std::nullopt;
    return found->value;
}

std::string_view WordOf(std::span<const Word> words, int32_t value) {
    const auto found = std::ranges::find(words, value, &Word::value);
    return found == words.end() ? std::string_view() : found->word;
}

FarmSide UsualSide(uint32_t mediumType, Content content, int32_t volume) {
    FarmSide side;
    side.content = content;
    side.volume = volume;
    const MediaType* type = FindMediaType(mediumType);
    const bool readOnly = type != nullptr && type->writing == Writing::ReadOnly;
    if (content == Content::Bad) {
        side.finalization = Finalization::Unknown;
    } else if (readOnly) {
        side.finalization = Finalization::Closed;
    }
    side.sequential = content == Content::FileSystem && type != nullptr && type->access == Access::Sequential;
    return side;
}

}  // namespace embedded
