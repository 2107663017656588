#include "embedded/catalogue/change_made.h"

namespace embedded {
namespace {

HandledSides SidesOf(Database& database, const Medium& medium, int32_t side) {
    if (side != kBothSides) return side == 0 ? HandledSides::A : HandledSides::B;
    return FindSides(database, medium).size() > 1 ? HandledSides::Both : HandledSides::A;
}

}  // namespace

HandledMedium MovedMedium(Database& database, const SlotPlace& place, const Medium& medium) {
    HandledMedium moved;
    moved.type = medium.type;
    moved.slot = AbsoluteSlot(database, place);
    return moved;
}

HandledMedium DrivenMedium(Database& database, const SlotPlace& place, const Medium& medium, int32_t side) {
    HandledMedium driven = MovedMedium(database, place, medium);
    driven.sides = SidesOf(database, medium, side);
    return driven;
}

}  // namespace embedded
