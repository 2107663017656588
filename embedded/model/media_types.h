#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace embedded {

enum class Writing { ReadOnly, WriteOnce, Rewritable };

// How a file system writes a medium.
enum class Access { Sequential, Random };

// The file system that a format writes.
const char* FileSystemName(Access access);

// A kind of medium, and what it allows.
struct MediaType {
    uint32_t code;  // as in the slot and side records
    std::string_view name;
    Writing writing;
    Access access;      // of the file system that a format without `sequential` writes
    uint64_t capacity;  // bytes of one side
};

inline constexpr uint32_t kUnknownMedium = 254;
inline constexpr uint32_t kNoMedium = 255;

// In the order of their codes, without the two special ones.
std::span<const MediaType> AllMediaTypes();

// Null for a code that has no entry.
const MediaType* FindMediaType(uint32_t code);
const MediaType* FindMediaType(std::string_view name);

// Names for messages: that of the table, else "unknown".
std::string_view MediaTypeName(uint32_t code);

}  // namespace embedded
