#pragma once

#include <cstdint>
#include <string>

namespace krvcmd::test {

// While it lives, standard output is a terminal of that many columns.
class PseudoTerminal {
  public:
    explicit PseudoTerminal(uint16_t columns);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    // Whether the terminal could be had.
    bool IsReady() const { return m_isReady; }

    // What has been written to the terminal since it was last read, as it was written.
    std::string ReadText() const;

  private:
    int m_controller = -1;
    int m_savedOutput = -1;
    bool m_isReady = false;
};

}  // namespace krvcmd::test
