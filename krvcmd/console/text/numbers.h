#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Ostrel::UI::Console {

// A whole number in decimal digits, without a heap.
class DecimalText {
  public:
    template <std::integral T>
    explicit DecimalText(T value) {
        m_end = std::to_chars(m_digits.data(), m_digits.data() + m_digits.size(), value).ptr;
    }

    DecimalText(const DecimalText&) = delete;
    DecimalText& operator=(const DecimalText&) = delete;

    // Valid as long as this object.
    std::string_view View() const { return {m_digits.data(), static_cast<size_t>(m_end - m_digits.data())}; }

  private:
    std::array<char, 20> m_digits;  // the sign and the 19 digits of the smallest 64-bit number
    char* m_end = m_digits.data();
};

// A number of bytes with its unit, such as "650 MByte" or "4.38 GByte"; "0" has no unit. `precise` gives
// values in MByte two decimals; every other unit has a fixed number of them.
std::string CapacityText(int64_t bytes, bool precise);

// ((total - free) * 100) / total, truncated towards zero; 0 when `total` is below 1. Nothing overflows on the
// way; a result beyond 64 bits becomes the largest number.
int64_t UsedPercent(int64_t free, int64_t total);

}  // namespace Ostrel::UI::Console
