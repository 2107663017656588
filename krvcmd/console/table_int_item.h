#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "krvcmd/console/capacity_text.h"
#include "krvcmd/console/table_item.h"

namespace Ostrel::UI::Console {

// How a number cell writes its value.
enum class NumberStyle : std::uint8_t { Plain, WithUnit };

// A number, aligned to the right.
class CTableIntItem : public CTableItem {
  public:
    CTableIntItem(std::uint32_t columnId, std::int64_t value, NumberStyle style);

    // A number that does not fit is shown as "..." (not filled up), or as full stops in a field of one or
    // two.
    std::size_t RenderInto(std::string& out, std::uint32_t width) const override;
    std::int64_t GetValue() const override { return m_value; }
    std::int32_t Compare(const CTableItem& other) const override;
    NumberedText GetOrderValue() const override { return {{}, m_value}; }

    // Rewrites the text from the value; `precision` concerns values with a unit only.
    virtual void FormatValue(CapacityPrecision precision);

    void SetValue(std::int64_t value);

  protected:
    // For classes with a text of their own; they call SetValue once they are constructed.
    explicit CTableIntItem(std::uint32_t columnId) : CTableItem(columnId, Alignment::Right) {}

  private:
    NumberStyle m_style = NumberStyle::Plain;
    std::int64_t m_value = 0;
};

}  // namespace Ostrel::UI::Console
