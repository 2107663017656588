#include "krvcmd/console/shortened_text.h"

#include "krvcmd/console/display_text.h"

namespace Ostrel::UI::Console {

void AppendEnd(std::string& out, std::string_view text, std::size_t width) {
    if (width > kEllipsis.size()) {
        out += kEllipsis;
        width -= kEllipsis.size();
    }
    out += TrailingPart(text, width);
}

void AppendBeginning(std::string& out, std::string_view text, std::size_t width) {
    std::string_view beginning = LeadingPart(text, width);
    if (width > kEllipsis.size()) {
        out += kEllipsis;
        beginning.remove_prefix(LeadingPart(beginning, kEllipsis.size()).size());
    }
    out += beginning;
}

}  // namespace Ostrel::UI::Console
