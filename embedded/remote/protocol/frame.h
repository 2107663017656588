#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "embedded/remote/protocol/cbor.h"

namespace embedded::remote {

// A message as it travels: the length of its CBOR in four bytes, the highest first, and the CBOR.
std::string Framed(const json& message);

// Cuts what arrives into messages.
class FrameReader {
  public:
    explicit FrameReader(size_t longest) : m_longest(longest) {}

    void Append(std::string_view bytes) { m_bytes.append(bytes); }

    // The next whole message, or nothing when more bytes are needed. Throws a ProtocolFailure.
    std::optional<json> Next();

    // Whether there are bytes of a message that is not whole.
    bool HasPartialMessage() const { return m_start < m_bytes.size(); }
    // The bytes behind the last whole message.
    std::string_view GetRest() const { return std::string_view(m_bytes).substr(m_start); }

  private:
    size_t m_longest;
    std::string m_bytes;
    size_t m_start = 0;  // of the first message that was not taken
};

}  // namespace embedded::remote
