#include "embedded/remote/client/ssh_failure.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace embedded::remote {
namespace {

constexpr size_t kLongestReason = 400;

struct Saying {
    const char* words;
    Code code;
};

// What OpenSSH says. The first that is in its text counts.
constexpr Saying kSayings[] = {
    {"Could not resolve hostname", Code::HostUnknown},
    {"Name or service not known", Code::HostUnknown},
    {"Host key verification failed", Code::HostKeyNotTrusted},
    {"REMOTE HOST IDENTIFICATION HAS CHANGED", Code::HostKeyNotTrusted},
    {"Permission denied", Code::LoginRefused},
    {"Too many authentication failures", Code::LoginRefused},
    {"Connection refused", Code::HostUnreachable},
    {"onnection timed out", Code::HostUnreachable},
    {"No route to host", Code::HostUnreachable},
    {"Network is unreachable", Code::HostUnreachable},
    {"Connection closed by", Code::HostUnreachable},
    {"Connection reset by", Code::HostUnreachable},
    {"kex_exchange_identification", Code::HostUnreachable},
    {"banner exchange", Code::HostUnreachable},
};

// A notice that says nothing about the failure.
bool IsNotice(std::string_view line) {
    return line.empty() || line.starts_with("Warning: Permanently added");
}

Code CodeOf(const SshEnd& end) {
    constexpr int kOwnFailure = 255;
    if (end.status >= 0 && end.status != kOwnFailure) return Code::NoAdministrationTool;
    const auto* const found = std::ranges::find_if(
        kSayings, [&end](const Saying& saying) { return end.text.find(saying.words) != std::string::npos; });
    return found == std::end(kSayings) ? Code::SshFailed : found->code;
}

}  // namespace

std::string ReasonOf(const SshEnd& end) {
    std::string reason;
    std::istringstream lines(end.text);
    std::string line;
    while (std::getline(lines, line)) {
        while (!line.empty() && (line.back() == '\r' || line.back() == '.'))
            line.pop_back();
        if (IsNotice(line)) continue;
        if (!reason.empty()) reason += "; ";
        reason += line;
    }
    if (reason.size() > kLongestReason) reason.erase(0, reason.size() - kLongestReason);
    for (char& c : reason) {
        if (c < ' ' || c > '~') c = '?';
    }
    if (!reason.empty()) return reason;
    return end.status >= 0 ? "ssh ended with status " + std::to_string(end.status) : "ssh was ended";
}

Refusal SshFailure(const KnownServer& server, const SshEnd& end) {
    const Code code = CodeOf(end);
    const std::string reason = ReasonOf(end);
    if (code == Code::SshFailed) return Refuse(code, {server.name, reason});
    return Refuse(code, {server.name, server.place.host, reason});
}

}  // namespace embedded::remote
