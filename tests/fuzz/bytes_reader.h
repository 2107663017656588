#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {

// Takes values from the front of a run of bytes. Past its end values are 0 or empty.
class BytesReader {
  public:
    BytesReader(const uint8_t* data, size_t size) : m_rest(TextOf(data, size)) {}

    bool AtEnd() const { return m_rest.empty(); }

    template <class Value>
    Value Take() {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value{};
        const std::string_view bytes = TakeUpTo(sizeof(Value));
        if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }

    // The next byte is the length of the text, at most `longest`.
    std::string_view TakeText(size_t longest) { return TakeUpTo(std::min<size_t>(Take<uint8_t>(), longest)); }

  private:
    std::string_view TakeUpTo(size_t count) {
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    std::string_view m_rest;
};

}  // namespace krvcmd::fuzz
