#include "krvcmd/console/table_item.h"

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

std::size_t CTableItem::RenderFitting(std::string& out, std::uint32_t width) const {
    const std::string_view text = GetText();
    const std::size_t length = GetTextLength();
    if (width == 0) {
        out += text;
        return length;
    }
    const std::size_t blanks = width - length;
    const std::size_t start = out.size();
    out.append(text.size() + blanks, ' ');
    text.copy(&out[start + BlanksInFront(m_alignment, blanks)], text.size());
    return width;
}

}  // namespace Ostrel::UI::Console
