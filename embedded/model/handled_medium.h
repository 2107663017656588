#pragma once

#include <cstdint>

namespace embedded {

// The sides of a medium that a drive reads or writes.
enum class HandledSides : int32_t { None = 0, A = 1, B = 2, Both = 3 };

// What the mechanics of a jukebox have to do in a call: which medium the robot moves, and what a drive does
// with it.
struct HandledMedium {
    uint32_t type = 0;  // the code of a media type
    int32_t slot = 0;   // zero-based, counted through the whole jukebox
    HandledSides sides = HandledSides::None;
    bool certified = false;  // the format was asked to check the whole surface
};

}  // namespace embedded
