#include "embedded/attached/transport/iscsi_address.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

constexpr std::string_view kScheme = "iscsi://";
constexpr size_t kLongestHost = 253;
constexpr size_t kLongestTarget = 223;  // RFC 7143, 4.2.7.1
constexpr uint16_t kHighestLun = 0x3FFF;

std::optional<uint16_t> Number(std::string_view text, unsigned lowest, unsigned highest) {
    unsigned number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = !text.empty() && failure == std::errc() && end == text.data() + text.size();
    if (!isWhole || number < lowest || number > highest) return std::nullopt;
    return static_cast<uint16_t>(number);
}

bool IsHost(std::string_view text) {
    return !text.empty() && text.size() <= kLongestHost && std::ranges::all_of(text, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
               c == '-' || c == '_';
    });
}

bool IsIpv6(std::string_view text) {
    return !text.empty() && text.size() <= kLongestHost && std::ranges::all_of(text, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
               c == ':' || c == '%';
    });
}

Error BadText(std::string_view text, const char* form) {
    return {ErrorKind::NotFound, "\"" + Printable(text) + "\" is not of the form " + form, {}};
}

}  // namespace

std::string IscsiPortal::GetText() const {
    const bool needsBrackets = host.find(':') != std::string::npos;
    return (needsBrackets ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

Result<IscsiPortal> ParseIscsiPortal(const std::string& text) {
    const auto bad = [&] { return BadText(text, "HOST, HOST:PORT or [IPV6]:PORT"); };
    std::string_view rest = text;
    IscsiPortal portal;
    if (rest.starts_with('[')) {
        const size_t end = rest.find(']');
        if (end == std::string_view::npos || !IsIpv6(rest.substr(1, end - 1))) return bad();
        portal.host = rest.substr(1, end - 1);
        rest.remove_prefix(end + 1);
    } else {
        const std::string_view host = rest.substr(0, rest.find(':'));
        if (!IsHost(host)) return bad();
        portal.host = host;
        rest.remove_prefix(host.size());
    }
    if (rest.empty()) return portal;
    const auto port = Number(rest.substr(1), 1, 65535);
    if (rest.front() != ':' || !port) return bad();
    portal.port = *port;
    return portal;
}

std::string IscsiAddress::GetText() const {
    return std::string(kScheme) + portal.GetText() + "/" + target + "/" + std::to_string(lun);
}

Result<IscsiAddress> ParseIscsiAddress(const std::string& text) {
    const auto bad = [&] { return BadText(text, "iscsi://HOST:PORT/TARGET/LUN"); };
    if (!text.starts_with(kScheme)) return bad();
    const std::string_view rest = std::string_view(text).substr(kScheme.size());
    const size_t portalEnd = rest.find('/');
    if (rest.substr(0, portalEnd).find('@') != std::string_view::npos) {
        // The text is not repeated: there may be a secret in it.
        return Error{ErrorKind::NotPermitted,
                     "an iSCSI address must not hold a user or a password: anybody could read it; put them "
                     "into a file",
                     {}};
    }
    const size_t targetEnd = rest.rfind('/');
    if (portalEnd == std::string_view::npos || targetEnd <= portalEnd + 1) return bad();
    const auto portal = ParseIscsiPortal(std::string(rest.substr(0, portalEnd)));
    if (!portal) return bad();
    const std::string_view target = rest.substr(portalEnd + 1, targetEnd - portalEnd - 1);
    const bool isPlain = std::ranges::all_of(target, [](char c) { return c > ' ' && c <= '~' && c != '/'; });
    const auto lun = Number(rest.substr(targetEnd + 1), 0, kHighestLun);
    if (!isPlain || target.size() > kLongestTarget || !lun) return bad();
    return IscsiAddress{*portal, std::string(target), *lun};
}

}  // namespace embedded::attached
