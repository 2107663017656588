#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace embedded::remote {

// Where a server is: ssh://[USER@]HOST[:PORT][/SERVER].
struct Place {
    std::string user;              // empty: ssh decides
    std::string host;              // a name or an address, without the brackets of an IPv6 address
    std::optional<uint16_t> port;  // none: ssh decides
    std::string server;            // on that host; empty: the host's own, or the one that it shows
};

// Nothing for any other text. User and host have only characters that mean nothing to a shell, and do not
// begin with "-". In SERVER "%" and two hexadecimal digits stand for a byte.
std::optional<Place> ParsePlace(std::string_view text);

}  // namespace embedded::remote
