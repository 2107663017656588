#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace embedded::tools {

// What a command wrote to its streams, in the order in which it arrived. Several threads may add to it.
class RecordedOutput {
  public:
    void Add(std::string_view bytes);

    // As text to read: without escape sequences, a carriage return as a line break, other control characters
    // as "?", and bytes that are not UTF-8 as U+FFFD. Of a very long output the beginning, and how many bytes
    // are left out.
    std::string GetText() const;

  private:
    mutable std::mutex m_mutex;
    std::string m_beginning;
    uint64_t m_leftOut = 0;
};

}  // namespace embedded::tools
