#pragma once

#include <cstdint>
#include <string>

#include "embedded/model/farm.h"
#include "embedded/store/database.h"

namespace embedded::tools {

// Media that no jukebox has seen yet.
struct NewMedia {
    std::string type;   // such as "DVD-RAM"
    std::string label;  // of their volumes; empty = they are blank
    int32_t count = 1;
    bool doubleSided = false;
};

// Reads "3 DVD-RAM Incoming": how many, the type, and the label where they are not blank. Throws
// UsageFailure.
NewMedia NewMediaOf(const std::string& text);

// Throws UsageFailure for a label that does not fit into the record that shows it.
void RequireShortLabels(const NewMedia& media);

// Puts them into the import station of the jukebox, in the caller's transaction. Throws ToolFailure for an
// unknown type.
void AddNewMedia(Database& database, const NewMedia& media, int32_t jukebox);

// The number of the next medium in a station or on the shelf.
int64_t NextNumber(Database& database, Place place, int32_t jukebox);

}  // namespace embedded::tools
