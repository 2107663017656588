#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace krvcmd {

// The text in a fixed-width field of a record: up to its first NUL, or the whole field when there is none.
template <std::size_t N>
inline std::string_view RecordText(const char (&field)[N]) {
    const void* end = std::memchr(field, '\0', N);
    return {field, end == nullptr ? N : static_cast<std::size_t>(static_cast<const char*>(end) - field)};
}

}  // namespace krvcmd
