#include "krvcmd/console/table_column.h"

#include "krvcmd/console/display_text.h"

namespace Ostrel::UI::Console {

void CTableColumn::SetTitle(std::string_view title) {
    m_title = title;
    m_width = static_cast<std::uint32_t>(DisplayLength(title));
    m_minWidth = -1;
}

std::uint32_t CTableColumn::GetWidthOrTitle() const {
    return m_width != 0 ? m_width : static_cast<std::uint32_t>(DisplayLength(m_title));
}

std::string CTableColumn::RenderTitle(std::uint32_t width) const {
    if (width == 0) return m_title;
    const std::size_t length = DisplayLength(m_title);
    if (length > width) return std::string(LeadingPart(m_title, width));
    const std::size_t blanks = width - length;
    const std::size_t inFront = blanks / 2;
    return std::string(inFront, ' ').append(m_title).append(blanks - inFront, ' ');
}

}  // namespace Ostrel::UI::Console
