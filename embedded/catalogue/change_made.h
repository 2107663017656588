#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "embedded/catalogue/items.h"
#include "embedded/model/handled_medium.h"
#include "embedded/model/refusal.h"
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

struct CallOutcome {
    ChangeMade change{std::string()};
    // The call fails, but what it has changed is kept: the medium cannot be read, or the slot is empty.
    std::optional<Refusal> refusal;
};

// The sides that a key means, of a medium with that many.
HandledSides SidesOfKey(int32_t side, size_t sideCount);

// A medium that the robot moves from or to the slot, and the sides of it that a drive works on; with none, it
// goes to no drive.
HandledMedium Handled(Database& database, const SlotPlace& place, const Medium& medium, HandledSides sides);

}  // namespace embedded
