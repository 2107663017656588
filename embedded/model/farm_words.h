#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "embedded/model/farm.h"

namespace embedded {

// The words that a layout file uses for codes.
struct Word {
    int32_t value;
    std::string_view word;
};

std::span<const Word> ContentWords();
std::span<const Word> FinalizationWords();
std::span<const Word> VolumeTypeWords();
std::span<const Word> SlotStateWords();

std::optional<int32_t> ValueOf(std::span<const Word> words, std::string_view word);
std::string_view WordOf(std::span<const Word> words, int32_t value);

// The side that a layout file means when it names no more than the content and the volume.
FarmSide UsualSide(uint32_t mediumType, Content content, int32_t volume);

}  // namespace embedded
