#include "krvcmd/console/text/wrap.h"

#include <algorithm>

#include "krvcmd/console/text/display_width.h"

namespace Ostrel::UI::Console {
namespace {

void AppendWrappedLine(std::string& out, std::string_view line, size_t maxWidth) {
    while (DisplayLength(line) > maxWidth) {
        // The blank itself may stand one position after the last one.
        const size_t blank = LeadingPart(line, maxWidth + 1).rfind(' ');
        if (blank == std::string_view::npos) break;
        out.append(line.substr(0, blank)).append(1, '\n');
        line.remove_prefix(blank + 1);
    }
    out += line;
}

}  // namespace

std::string WrapText(std::string_view text, size_t maxWidth) {
    if (maxWidth == 0) return std::string(text);
    std::string wrapped;
    while (!text.empty()) {
        const size_t lineBreak = text.find('\n');
        const std::string_view line =
            lineBreak == std::string_view::npos ? text : text.substr(0, lineBreak + 1);
        AppendWrappedLine(wrapped, line, maxWidth);
        text.remove_prefix(line.size());
    }
    return wrapped;
}

std::string DefinitionText(std::string_view term, std::string_view description, size_t maxWidth) {
    std::string line = std::string("  ").append(term).append(" - ");
    const size_t prefixLength = DisplayLength(line);
    if (maxWidth != 0 && prefixLength + DisplayLength(description) >= maxWidth) {
        // One position stays free after the first part.
        const size_t taken = std::min(prefixLength + 1, maxWidth);
        const std::string_view firstPart = LeadingPart(description, maxWidth - taken);
        line.append(firstPart).append("\n\t");
        description.remove_prefix(firstPart.size());
    }
    return line.append(description).append(1, '\n');
}

}  // namespace Ostrel::UI::Console
