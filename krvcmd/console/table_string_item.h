#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/console/table_item.h"

namespace Ostrel::UI::Console {

// A text, aligned to the left. Numbers at the end of texts compare by value: Disc-9 before Disc-10.
class CTableStringItem : public CTableItem {
  public:
    CTableStringItem(std::uint32_t columnId, std::string_view text);

    // A text that does not fit loses its beginning; "..." stands for it when there is room for more.
    std::size_t RenderInto(std::string& out, std::uint32_t width) const override;
    std::int32_t Compare(const CTableItem& other) const override;
    NumberedText GetOrderValue() const override { return OrderValueOf(GetText()); }

    void SetText(std::string_view text) { AssignText(text); }

  private:
    NumberedText OrderValueOf(std::string_view text) const;
};

}  // namespace Ostrel::UI::Console
