#pragma once

#include <array>
#include <string_view>

#include "krvcmd/console/platform/console_platform.h"
#include "krvcmd/frontend/base/status.h"

namespace Ostrel::UI::Console {

// The only place that writes to the console.
class ConsoleStreams {
  public:
    // Writes `text` as it stands. Standard output is flushed before anything goes to standard error, and
    // standard error after it, so both keep their order when they end in the same place. Drops text for a
    // stream that has failed.
    void Write(Stream stream, std::string_view text);

    // Flushes standard output. Returns the first error of any Write or flush since the last Finish as a
    // system error with the platform's error number; success when there was none. A pipe without a reader
    // is no error. The next Write tries a stream that failed again.
    krvcmd::Status Finish();

  private:
    bool HasFailed(Stream stream) const;
    void Flush(Stream stream);
    // Called after a failed write, with what that left in errno.
    void NoteFailure(Stream stream, int error);

    std::array<bool, 2> m_failed{};
    int m_firstError = 0;
};

}  // namespace Ostrel::UI::Console
