#include "embedded/remote/servers/place.h"

#include <algorithm>
#include <charconv>

#include "embedded/model/strings.h"

namespace embedded::remote {
namespace {

constexpr std::string_view kScheme = "ssh://";
constexpr size_t kLongestHost = 253;
constexpr size_t kLongestUser = 64;
constexpr size_t kLongestServer = 64;

bool IsLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool IsPlain(std::string_view word, std::string_view others, size_t longest) {
    return !word.empty() && word.size() <= longest && word.front() != '-' &&
           std::ranges::all_of(word, [others](char c) {
               return IsLetterOrDigit(c) || others.find(c) != std::string_view::npos;
           });
}

bool ReadPort(std::string_view digits, Place& place) {
    uint16_t port = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, port);
    if (failure != std::errc() || stop != end || port == 0) return false;
    place.port = port;
    return true;
}

bool ReadHost(std::string_view text, Place& place) {
    if (text.starts_with('[')) {
        const size_t close = text.find(']');
        if (close == std::string_view::npos) return false;
        place.host = text.substr(1, close - 1);
        text.remove_prefix(close + 1);
        return IsPlain(place.host, ":.%", kLongestHost) &&
               (text.empty() || (text.starts_with(':') && ReadPort(text.substr(1), place)));
    }
    const size_t colon = text.find(':');
    place.host = text.substr(0, colon);
    return IsPlain(place.host, ".-_", kLongestHost) &&
           (colon == std::string_view::npos || ReadPort(text.substr(colon + 1), place));
}

bool ReadServer(std::string_view text, std::string& server) {
    for (size_t position = 0; position < text.size(); ++position) {
        if (text[position] != '%') {
            server += text[position];
            continue;
        }
        const std::optional<char> byte = ByteOfHexDigits(text.substr(position + 1, 2));
        if (!byte.has_value() || *byte == '\0') return false;
        server += *byte;
        position += 2;
    }
    return server.size() <= kLongestServer;
}

}  // namespace

std::optional<Place> ParsePlace(std::string_view text) {
    if (!text.starts_with(kScheme)) return std::nullopt;
    text.remove_prefix(kScheme.size());
    Place place;
    const size_t slash = text.find('/');
    std::string_view host = text.substr(0, slash);
    if (const size_t at = host.find('@'); at != std::string_view::npos) {
        place.user = host.substr(0, at);
        if (!IsPlain(place.user, ".-_+", kLongestUser)) return std::nullopt;
        host.remove_prefix(at + 1);
    }
    if (!ReadHost(host, place)) return std::nullopt;
    if (slash != std::string_view::npos && !ReadServer(text.substr(slash + 1), place.server))
        return std::nullopt;
    return place;
}

}  // namespace embedded::remote
