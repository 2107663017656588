#include "embedded/platform/file_size_signal.h"

namespace embedded {

// Windows has no such limit.
FileSizeSignalGuard::FileSizeSignalGuard() {
    m_wasBlocked = true;
    m_wasPending = true;
}
FileSizeSignalGuard::~FileSizeSignalGuard() = default;

}  // namespace embedded
