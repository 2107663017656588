#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Ostrel::UI::Console {

// One column of a table. Widths count characters.
class CTableColumn {
  public:
    // The title decides the width and takes the minimum back to "not set".
    void SetTitle(std::string_view title);
    void SetColumnId(std::uint32_t columnId) { m_columnId = columnId; }
    void SetMinWidth(std::int32_t minWidth) { m_minWidth = minWidth; }
    void SetMaxWidth(std::int32_t maxWidth) { m_maxWidth = maxWidth; }
    void SetWidth(std::uint32_t width) { m_width = width; }

    const std::string& GetTitle() const { return m_title; }
    std::uint32_t GetColumnId() const { return m_columnId; }
    // -1 when not set, 0 for no minimum. A column whose minimum is not 0 is elastic: it gives way when
    // the table is wider than the line.
    std::int32_t GetMinWidth() const { return m_minWidth; }
    // -1 when not set, 0 for no maximum.
    std::int32_t GetMaxWidth() const { return m_maxWidth; }
    std::uint32_t GetWidth() const { return m_width; }
    // The width, or the title's length while there is none.
    std::uint32_t GetWidthOrTitle() const;

    // The title centred in a field of `width` characters, cut at its end when it is longer; 0 leaves
    // the title as it is.
    std::string RenderTitle(std::uint32_t width) const;

  private:
    std::int32_t m_minWidth = -1;
    std::int32_t m_maxWidth = -1;
    std::uint32_t m_width = 0;
    std::string m_title;
    std::uint32_t m_columnId = 0;
};

}  // namespace Ostrel::UI::Console
