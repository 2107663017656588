#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace Ostrel::UI::Console {

// A line of text that is built from left to right, over and over again. It lies in memory full of blanks, so
// that blanks between texts need not be written.
class TextLine {
  public:
    size_t GetSize() const { return m_size; }
    std::string_view View() const { return std::string_view(m_memory).substr(0, m_size); }
    std::span<char> Characters() { return std::span(m_memory).first(m_size); }

    // Appends `size` blanks and returns the first of them, for the caller to write over.
    char* AppendBlanks(size_t size) {
        if (size > m_memory.size() - m_size) m_memory.resize(2 * (m_size + size), ' ');
        m_size += size;
        return m_memory.data() + m_size - size;
    }
    void Append(std::string_view text) { text.copy(AppendBlanks(text.size()), text.size()); }
    void Append(char character) { *AppendBlanks(1) = character; }

    // Removes everything from position `size` on.
    void Truncate(size_t size) {
        std::ranges::fill(Characters().subspan(size), ' ');
        m_size = size;
    }

  private:
    std::string m_memory;  // blank from m_size on
    size_t m_size = 0;
};

}  // namespace Ostrel::UI::Console
