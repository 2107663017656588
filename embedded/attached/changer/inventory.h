#pragma once

#include <vector>

#include "embedded/attached/changer/geometry.h"

namespace embedded::attached {

// The elements of a changer as it reports them, each list in the order of the addresses. An element that the
// changer counts but does not report is left out: its magazine is not there.
struct Inventory {
    std::vector<Element> pickers;
    std::vector<Element> slots;
    std::vector<Element> mailSlots;
    std::vector<Element> drives;
};

// Asks page by page, so that an answer stays below 64 KiB. Every address that the changer reports lies within
// the range that its geometry names, or the inventory fails.
Result<Inventory> ReadInventory(Device& changer, const Geometry& geometry);

// The same for one type of element.
Result<std::vector<Element>> ReadElements(Device& changer, ElementType type, const ElementRange& range);

}  // namespace embedded::attached
