// The words that a layout file uses for codes, and the values that may be left out of it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "embedded/model/farm.h"

namespace embedded {

struct Word {
    int32_t value;
    std::string_view word;
};

std::span<const Word> ContentWords();
std::span<const Word> FinalizationWords();
std::span<const Word> VolumeTypeWords();

std::optional<int32_t> ValueOf(std::span<const Word> words, std::string_view word);
std::string_view WordOf(std::span<const Word> words, int32_t value);

// A side as it is when a layout file says no more than its content and its volume.
FarmSide UsualSide(uint32_t mediumType, Content content, int32_t volume);

}  // namespace embedded
