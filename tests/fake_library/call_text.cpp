#include "tests/fake_library/call_text.h"

#include <algorithm>

namespace krvfake {
namespace {

std::string Quote(std::string_view text) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (byte < 0x20 || byte > 0x7E) {
            quoted += "\\x";
            quoted += kDigits[byte >> 4U];
            quoted += kDigits[byte & 0xFU];
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

}  // namespace

std::string Argument(const char* name, int64_t value) {
    return std::string(" ") + name + "=" + std::to_string(value);
}

std::string TextArgument(const char* name, const char* value) {
    return std::string(" ") + name + "=" + (value == nullptr ? "null" : Quote(value));
}

std::string Describe(const JukeboxKey& key) {
    return Argument("J", key.jukeboxId);
}

std::string Describe(const MagazineKey& key) {
    return Argument("J", key.jukeboxId) + Argument("M", key.magazine);
}

std::string Describe(const DriveKey& key) {
    return Argument("J", key.jukeboxId) + Argument("D", key.drive);
}

std::string Describe(const SlotKey& key) {
    return Argument("J", key.jukeboxId) + Argument("M", key.magazine) + Argument("S", key.slot);
}

std::string Describe(const SideKey& key) {
    return Argument("J", key.jukeboxId) + Argument("M", key.magazine) + Argument("S", key.slot) +
           Argument("side", key.side);
}

std::string Describe(const FormatOptions& options) {
    const char* const end = std::find(options.label, options.label + sizeof(options.label), '\0');
    return " label=" + Quote({options.label, end}) + Argument("certify", options.certify) +
           Argument("sequential", options.sequential);
}

}  // namespace krvfake
