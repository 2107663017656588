#include "krvcmd/console/shortened_text.h"

#include "krvcmd/console/display_text.h"

namespace Ostrel::UI::Console {

namespace {

// Appends `part`, which takes at most `width` positions, and a blank where a wide character did not fit any
// more.
void AppendFilled(std::string& out, std::string_view part, std::size_t width) {
    out += part;
    out.append(width - DisplayLength(part), ' ');
}

}  // namespace

std::size_t AppendEnd(std::string& out, std::string_view text, std::size_t width) {
    const std::size_t lost = width > kEllipsis.size() ? kEllipsis.size() : 0;
    out += kEllipsis.substr(0, lost);
    AppendFilled(out, TrailingPart(text, width - lost), width - lost);
    return width;
}

std::size_t AppendBeginning(std::string& out, std::string_view text, std::size_t width) {
    const std::size_t lost = width > kEllipsis.size() ? kEllipsis.size() : 0;
    out += kEllipsis.substr(0, lost);
    const std::string_view behindLost = TrailingPart(text, DisplayLength(text) - lost);
    AppendFilled(out, LeadingPart(behindLost, width - lost), width - lost);
    return width;
}

}  // namespace Ostrel::UI::Console
