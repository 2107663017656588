#pragma once

#include <windows.h>

#include <array>
#include <memory>

#include "tools/rehearsal/recorded_output.h"

namespace embedded::tools {

// Stands between a process and the outputs of this one: it passes on what the process writes, and records it.
// A console stays with the process; what is written there is not recorded.
class OutputTee {
  public:
    // Throws ToolFailure when there are no pipes left.
    explicit OutputTee(RecordedOutput& record);
    OutputTee(const OutputTee&) = delete;
    OutputTee& operator=(const OutputTee&) = delete;
    ~OutputTee();

    // What the process gets in place of STD_OUTPUT_HANDLE or STD_ERROR_HANDLE.
    HANDLE GetHandle(DWORD stream) const;

    // The process has its handles.
    void Start();

    // Passes on what has been written so far, and ends.
    void Finish();

  private:
    class Channel;

    std::array<std::unique_ptr<Channel>, 2> m_channels;
};

}  // namespace embedded::tools
