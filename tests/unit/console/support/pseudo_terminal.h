#pragma once

#include <cstdint>

namespace krvcmd::test {

// While it lives, standard output is a terminal of that many columns.
class PseudoTerminal {
  public:
    explicit PseudoTerminal(std::uint16_t columns);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    // Whether the terminal could be had.
    bool IsReady() const { return m_isReady; }

  private:
    int m_controller = -1;
    int m_savedOutput = -1;
    bool m_isReady = false;
};

}  // namespace krvcmd::test
