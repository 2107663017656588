#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "embedded/catalogue/items.h"
#include "embedded/model/handled_medium.h"
#include "embedded/store/database.h"

namespace embedded {

// The side of a key that stands for every side that the medium has.
inline constexpr int32_t kBothSides = 2;

// What a call changed.
struct ChangeMade {
    // From words alone: a change that needs no medium.
    ChangeMade(std::string text) : words(std::move(text)) {}
    ChangeMade(std::string text, HandledMedium handled) : words(std::move(text)), medium(handled) {}

    std::string words;  // for the journal; empty when nothing changed
    std::optional<HandledMedium> medium;
};

// A medium that the robot moves from or to the slot, without a drive.
HandledMedium MovedMedium(Database& database, const SlotPlace& place, const Medium& medium);

// A medium that goes from the slot to a drive and back.
HandledMedium DrivenMedium(Database& database, const SlotPlace& place, const Medium& medium, int32_t side);

}  // namespace embedded
