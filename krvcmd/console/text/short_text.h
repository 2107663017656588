#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <string_view>

namespace Ostrel::UI::Console {

// A text of at most `capacity` characters that is put together without a heap. What is beyond them is lost.
template <size_t capacity>
class ShortText {
  public:
    std::string_view View() const { return {m_text.data(), m_size}; }
    operator std::string_view() const { return View(); }

    void Append(std::string_view text) { m_size += text.copy(End(), capacity - m_size); }
    template <std::integral Number>
    void AppendNumber(Number number) {
        m_size =
            static_cast<size_t>(std::to_chars(End(), m_text.data() + capacity, number).ptr - m_text.data());
    }

  private:
    char* End() { return m_text.data() + m_size; }

    std::array<char, capacity> m_text;
    size_t m_size = 0;
};

}  // namespace Ostrel::UI::Console
