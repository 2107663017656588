#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "embedded/catalogue/reconciliation.h"
#include "embedded/store/database.h"

namespace embedded {

// The elements of a real jukebox in the catalogue, in the order of their addresses, and its unfinished move.
KnownJukebox ReadKnownJukebox(Database& database, int32_t jukebox);

std::optional<Intent> FindIntent(Database& database, int32_t jukebox);

// The jukeboxes of an attached server, by ID.
std::vector<int32_t> AttachedJukeboxes(Database& database);

// What a look at a jukebox has shown.
struct Sighting {
    int32_t jukebox = 0;
    std::vector<ElementState> elements;
    Robot robot = Robot::AtRest;
};

// Whether the catalogue differs from what the changer reported.
bool Differs(Database& database, const Sighting& sighting);

// Brings the catalogue up to date with looks at one moment; runs in the caller's transaction. Media that are
// nowhere go to the shelf, and come back from it by their barcodes. Unfinished moves of robots that are at
// rest are finished with this. Returns what is in drives and pickers, for each look.
std::vector<std::vector<LoadedMedium>> Synchronize(Database& database,
                                                   const std::vector<Sighting>& sightings);

// A counter of the server that changes when a move begins and when it ends.
int64_t ReadGeneration(Database& database);

// Each runs in the caller's transaction.
void BeginMove(Database& database, int32_t jukebox, const Intent& intent);
void EndMove(Database& database, int32_t jukebox);

}  // namespace embedded
