#include "krvcmd/console/table_dir_item.h"

#include <cstddef>
#include <string_view>

#include "krvcmd/console/display_text.h"
#include "krvcmd/console/shortened_text.h"

namespace Ostrel::UI::Console {

std::size_t CTableDirItem::RenderInto(std::string& out, std::uint32_t width) const {
    if (Fits(width)) return RenderFitting(out, width);

    const std::string_view text = GetText();
    // Positions are unsigned and wrap around: without a backslash `first` is 0 and `last` the largest
    // position, and with a single one `last - first` is the largest position.
    const std::size_t first = text.find('\\') + 1;
    const std::size_t last = text.rfind('\\');
    if (first == last) return AppendBeginning(out, text, width);
    const std::size_t middle = last - first;
    if (middle > kEllipsis.size() && text.size() < middle + kEllipsis.size()) {
        // The middle goes. Only a path that begins and ends with a backslash gets here, so nothing else is
        // left.
        constexpr std::string_view kElided = "\\...\\";
        out += kElided;
        return kElided.size();
    }
    return AppendEnd(out, text, width);
}

}  // namespace Ostrel::UI::Console
