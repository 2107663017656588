#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "embedded/jukebox/physical_jukebox.h"
#include "embedded/store/database.h"

namespace embedded {

// How the elements of a changer are the items of a jukebox. Addresses stand in the order of the items.
struct ElementMap {
    std::vector<uint16_t> pickers;
    std::vector<std::vector<uint16_t>> magazines;
    std::vector<uint16_t> mailSlots;
    std::vector<uint16_t> drives;  // as many as the address of the jukebox names
};

// Records where a jukebox is reached, whose rows are in the catalogue already. Runs in the caller's
// transaction.
void RecordAttachment(Database& database, int32_t jukebox, const JukeboxAddress& address,
                      const ElementMap& elements);

// Takes a jukebox out of the catalogue; its media and what is known of them go to the shelf.
void RemoveAttachedJukebox(Database& database, int32_t jukebox);

JukeboxAddress ReadJukeboxAddress(Database& database, int32_t jukebox);

TimeLimits ReadTimeLimits(Database& database, int32_t jukebox);

// Replaces the limits of a jukebox. Runs in the caller's transaction.
void RecordTimeLimits(Database& database, int32_t jukebox, const TimeLimits& limits);

}  // namespace embedded
