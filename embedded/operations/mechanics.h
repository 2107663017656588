#pragma once

#include <cstdint>
#include <vector>

#include "embedded/catalogue/format_erase_finalize.h"
#include "embedded/catalogue/import_export_scan.h"

namespace embedded {

// What happens physically in the jukeboxes of a farm, in terms of the catalogue: media, slots and sides. It
// decides nothing and records no states, names or IDs. When a function throws a Refusal, either nothing has
// happened or the catalogue already shows it.
class Mechanics {
  public:
    Mechanics() = default;
    Mechanics(const Mechanics&) = delete;
    Mechanics& operator=(const Mechanics&) = delete;
    virtual ~Mechanics() = default;

    // Carries the medium from the import station to the slot. Returns what a drive has read on the way;
    // nothing where media are read only when they are scanned.
    virtual std::vector<ReadSide> Import(const Transfer& transfer) = 0;

    // Carries the medium from the slot to the export station.
    virtual void Export(const Transfer& transfer) = 0;

    // Loads the side into a drive, or one side after the other, and brings the medium back. Returns the sides
    // that there are; an empty slot has none, or is refused.
    virtual std::vector<ReadSide> Read(const Slot& slot, int32_t side) = 0;

    // Writes the sides of the plan, at least one, until one fails.
    virtual WrittenSides Write(const WritePlan& plan) = 0;
};

}  // namespace embedded
