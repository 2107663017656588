#include "embedded/catalogue/change_made.h"

namespace embedded {

HandledSides SidesOfKey(int32_t side, size_t sideCount) {
    if (side == kBothSides) return sideCount > 1 ? HandledSides::Both : HandledSides::A;
    return side == 0 ? HandledSides::A : HandledSides::B;
}

HandledMedium Handled(Database& database, const SlotPlace& place, const Medium& medium, HandledSides sides) {
    HandledMedium handled;
    handled.type = medium.type;
    handled.slot = AbsoluteSlot(database, place);
    handled.sides = sides;
    return handled;
}

}  // namespace embedded
