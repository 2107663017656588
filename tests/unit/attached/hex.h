#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::attached {

// Bytes as the standards show them: "A5 00 00 01"; "x4" behind a byte repeats it.
inline std::vector<uint8_t> Hex(std::string_view text) {
    std::vector<uint8_t> bytes;
    size_t at = 0;
    while (at < text.size()) {
        const size_t end = std::min(text.find(' ', at), text.size());
        const std::string word(text.substr(at, end - at));
        at = end + 1;
        if (word.empty()) continue;
        if (word.front() == 'x') {
            bytes.insert(bytes.end(), std::stoul(word.substr(1)) - 1, bytes.back());
        } else {
            bytes.push_back(static_cast<uint8_t>(std::stoul(word, nullptr, 16)));
        }
    }
    return bytes;
}

// The bytes of a text, with blanks behind up to `length`.
inline std::vector<uint8_t> Padded(std::string_view text, size_t length) {
    std::vector<uint8_t> bytes(text.begin(), text.end());
    bytes.resize(length, ' ');
    return bytes;
}

inline std::vector<uint8_t> Joined(std::initializer_list<std::vector<uint8_t>> parts) {
    std::vector<uint8_t> bytes;
    for (const auto& part : parts)
        bytes.insert(bytes.end(), part.begin(), part.end());
    return bytes;
}

}  // namespace embedded::attached
