#pragma once

#include <cstddef>

namespace krvcmd::reliability {

// While it lives, the memory that the program asks for by new and calloc is counted, and one request or all
// from one on are refused. What the scripted library asks for is left alone.
//
// At most one at a time. Only in test programs that link short_memory.cpp, which takes the place of the
// global operators new and delete.
class ShortMemory {
  public:
    enum class Refuse { Once, FromThereOn };

    // `number` is the first request to be refused; 1 is the next one.
    ShortMemory(size_t number, Refuse refuse);
    ~ShortMemory();
    ShortMemory(const ShortMemory&) = delete;
    ShortMemory& operator=(const ShortMemory&) = delete;

    // Requests so far, refused ones counted too.
    static size_t Requests();

    // Bytes asked for so far.
    static size_t Bytes();

    // Blocks that were handed out by new while a ShortMemory lived and were not given back yet.
    static ptrdiff_t BlocksHeld();
};

}  // namespace krvcmd::reliability
