#include "krvcmd/console/table_item.h"

#include "krvcmd/console/display_text.h"

namespace Ostrel::UI::Console {

namespace {

std::size_t BlanksInFront(Alignment alignment, std::size_t blanks) {
    switch (alignment) {
        case Alignment::Left:
            return 0;
        case Alignment::Centre:
            return blanks / 2;
        case Alignment::Right:
            return blanks;
    }
    return 0;
}

}  // namespace

std::string CTableItem::Render(std::uint32_t width) const {
    std::string result;
    RenderInto(result, width);
    return result;
}

bool CTableItem::RenderFitting(std::string& out, std::uint32_t width) const {
    const std::string_view text = GetText();
    if (width == 0) {
        out += text;
        return true;
    }
    const std::size_t length = DisplayLength(text);
    if (length > width) return false;
    const std::size_t blanks = width - length;
    const std::size_t inFront = BlanksInFront(m_alignment, blanks);
    const std::size_t start = out.size();
    out.append(text.size() + blanks, ' ');
    text.copy(&out[start + inFront], text.size());
    return true;
}

}  // namespace Ostrel::UI::Console
