#include "tests/e2e/on_screen.h"

namespace e2e {
namespace {

constexpr size_t kTabStop = 8;

class Screen {
  public:
    explicit Screen(size_t columns) : m_columns(columns) {}

    void Put(char byte) {
        if (m_row.size() == m_columns) EndRow();
        m_row += byte;
    }

    void Tab() {
        do {
            Put(' ');
        } while (m_row.size() % kTabStop != 0 && m_row.size() < m_columns);
    }

    void EndRow() {
        m_rows += WithoutBlanksAtTheEnd() + "\n";
        m_row.clear();
    }

    std::string Rows() const { return m_rows + WithoutBlanksAtTheEnd(); }

  private:
    std::string WithoutBlanksAtTheEnd() const { return m_row.substr(0, m_row.find_last_not_of(' ') + 1); }

    size_t m_columns;
    std::string m_rows;
    std::string m_row;
};

}  // namespace

std::string AsOnScreen(std::string_view text, int columns) {
    Screen screen(static_cast<size_t>(columns));
    for (const char byte : text) {
        if (byte == '\n') {
            screen.EndRow();
        } else if (byte == '\t') {
            screen.Tab();
        } else {
            screen.Put(byte);
        }
    }
    return screen.Rows();
}

}  // namespace e2e
