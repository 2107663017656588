#include "embedded/remote/protocol/frame.h"

namespace embedded::remote {
namespace {

constexpr size_t kHead = 4;

}  // namespace

std::string Framed(const json& message) {
    const std::string body = EncodeCbor(message);
    std::string frame;
    frame.reserve(kHead + body.size());
    for (unsigned shift = 32; shift > 0;) {
        shift -= 8;
        frame.push_back(static_cast<char>(body.size() >> shift & 0xFFU));
    }
    return frame.append(body);
}

std::optional<json> FrameReader::Next() {
    const std::string_view rest = GetRest();
    if (rest.size() < kHead) return std::nullopt;
    size_t length = 0;
    for (const char byte : rest.substr(0, kHead))
        length = length << 8U | static_cast<uint8_t>(byte);
    if (length > m_longest) {
        throw ProtocolFailure("a message of " + std::to_string(length) + " bytes, at most " +
                              std::to_string(m_longest) + " are allowed");
    }
    if (rest.size() - kHead < length) return std::nullopt;
    json message = DecodeCbor(rest.substr(kHead, length));
    m_start += kHead + length;
    if (m_start == m_bytes.size()) {
        m_bytes.clear();
        m_start = 0;
    }
    return message;
}

}  // namespace embedded::remote
