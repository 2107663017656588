#include "tools/rehearsal/recorded_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace embedded::tools {
namespace {

constexpr size_t kMostRecorded = 1U << 20U;
constexpr char kEscape = '\x1B';
constexpr char kBell = '\a';

// The position behind the escape sequence that starts at `position`.
size_t EndOfSequence(std::string_view bytes, size_t position) {
    const size_t kind = position + 1;
    if (kind >= bytes.size()) return bytes.size();
    if (bytes[kind] == '[') {
        const auto isFinal = [](char character) { return character >= '@' && character <= '~'; };
        const auto rest = bytes.substr(kind + 1);
        const auto found = std::ranges::find_if(rest, isFinal);
        const auto length = static_cast<size_t>(found - rest.begin());
        return std::min(kind + 1 + length + 1, bytes.size());
    }
    if (bytes[kind] == ']') {
        const size_t end = bytes.find_first_of(std::string{kBell, kEscape}, kind);
        if (end == std::string_view::npos) return bytes.size();
        return std::min(end + (bytes[end] == kBell ? 1 : 2), bytes.size());
    }
    return kind + 1;
}

std::string WithoutControl(std::string_view bytes) {
    std::string text;
    for (size_t position = 0; position < bytes.size();) {
        const char character = bytes[position];
        if (character == kEscape) {
            position = EndOfSequence(bytes, position);
            continue;
        }
        ++position;
        if (character == '\r' && position < bytes.size() && bytes[position] == '\n') continue;
        const bool isControl = (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) &&
                               character != '\n' && character != '\t';
        // A line that a program writes again and again.
        text += character == '\r' ? '\n' : isControl ? '?' : character;
    }
    return text;
}

std::string AsUtf8(const std::string& bytes) {
    using Json = nlohmann::json;
    return Json::parse(Json(bytes).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

}  // namespace

void RecordedOutput::Add(std::string_view bytes) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const size_t room = kMostRecorded - m_beginning.size();
    m_beginning += bytes.substr(0, room);
    m_leftOut += bytes.size() - std::min(room, bytes.size());
}

std::string RecordedOutput::GetText() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::string text = AsUtf8(WithoutControl(m_beginning));
    if (m_leftOut != 0) text += "\n(" + std::to_string(m_leftOut) + " more bytes)\n";
    return text;
}

}  // namespace embedded::tools
