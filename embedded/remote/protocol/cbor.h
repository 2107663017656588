#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace embedded::remote {

using nlohmann::json;

// What the other side sent is not the protocol. The text is no sentence: "a message of 5 bytes is cut off".
class ProtocolFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// How deeply arrays and maps may lie in each other.
inline constexpr size_t kMaxDepth = 8;

std::string EncodeCbor(const json& value);

// The one value that the bytes are. Throws a ProtocolFailure for anything else, for tags, for lengths that
// are left open, and for arrays or maps deeper than kMaxDepth.
json DecodeCbor(std::string_view bytes);

// Texts travel as byte strings: no encoding is promised.
json BytesOf(std::string_view text);
// Throws a ProtocolFailure when the value is no byte string.
std::string_view TextOf(const json& value);

}  // namespace embedded::remote
