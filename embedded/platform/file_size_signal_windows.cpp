#include "embedded/platform/file_size_signal.h"

namespace embedded {

// Windows has no such limit.
FileSizeSignalGuard::FileSizeSignalGuard() = default;
FileSizeSignalGuard::~FileSizeSignalGuard() = default;

}  // namespace embedded
