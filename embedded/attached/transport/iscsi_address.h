#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "embedded/attached/base/result.h"

namespace embedded::attached {

// Where iSCSI targets are reached: HOST, HOST:PORT or [IPV6]:PORT.
struct IscsiPortal {
    std::string host;  // IPv6 addresses without brackets
    uint16_t port = 3260;

    // With brackets and port.
    std::string GetText() const;

    bool operator==(const IscsiPortal&) const = default;
};
Result<IscsiPortal> ParseIscsiPortal(const std::string& text);

// A logical unit of a target.
struct IscsiAddress {
    IscsiPortal portal;
    std::string target;  // such as iqn.2001-04.com.example:jukebox
    uint16_t lun = 0;

    std::string GetText() const;

    bool operator==(const IscsiAddress&) const = default;
};

// iscsi://HOST[:PORT]/TARGET/LUN. A user or a password in it is refused: other users could read it in the
// list of processes.
Result<IscsiAddress> ParseIscsiAddress(const std::string& text);

// For targets that ask for a user and a secret (CHAP). Both empty: the target is expected not to ask.
struct IscsiLogin {
    std::string user;
    std::string secret;
    std::string initiator;  // the name under which the target knows this host; empty: made of the host's name
};

struct IscsiLimits {
    std::chrono::milliseconds connect{15'000};  // to reach the portal and log in
    std::chrono::milliseconds ping{5'000};  // how often a target is asked for a sign of life during a command
    std::chrono::milliseconds silence{20'000};  // without any sign of life: the connection is dead
};

}  // namespace embedded::attached
