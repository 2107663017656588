#pragma once

#include <cstdio>
#include <string>

namespace krvcmd::reliability {

// Catches what the process writes to a standard stream's descriptor, in a file in memory.
class CapturedStream {
  public:
    // stdout or stderr.
    explicit CapturedStream(std::FILE* stream);
    ~CapturedStream();
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;

    // From here on; everything before is written to where the stream goes otherwise.
    void Begin();

    // Ends the catching and hands out what was written since Begin.
    std::string End();

  private:
    std::FILE* m_stream;
    int m_file;
    int m_saved = -1;  // where the stream goes otherwise
};

}  // namespace krvcmd::reliability
