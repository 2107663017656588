#pragma once

#include <array>
#include <memory>

#include "tools/rehearsal/recorded_output.h"

namespace embedded::tools {

// Stands between a process and the outputs of this one: it passes on what the process writes, and records it.
// What is a terminal is a terminal to the process as well; both streams stay one where they are one.
class OutputTee {
  public:
    // Throws ToolFailure when there are no pipes or terminals left.
    explicit OutputTee(RecordedOutput& record);
    OutputTee(const OutputTee&) = delete;
    OutputTee& operator=(const OutputTee&) = delete;
    ~OutputTee();

    // What the process gets in place of the descriptor 1 or 2; -1 for one that is closed.
    int GetDescriptor(int stream) const;

    // The process has its descriptors.
    void Start();

    // Passes on what has been written so far, and ends. What is left of the process loses its output.
    void Finish();

  private:
    class Channel;

    std::array<std::shared_ptr<Channel>, 2> m_channels;
};

}  // namespace embedded::tools
