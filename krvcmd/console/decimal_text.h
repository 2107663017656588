#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
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
    std::string_view View() const {
        return {m_digits.data(), static_cast<std::size_t>(m_end - m_digits.data())};
    }

  private:
    std::array<char, 20> m_digits;  // the sign and the 19 digits of the smallest 64-bit number
    char* m_end = m_digits.data();
};

}  // namespace Ostrel::UI::Console
