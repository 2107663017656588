#include "krvcmd/frontend/exit_status.h"

namespace krvcmd {

int ExitStatus(std::uint32_t code) {
    constexpr std::uint32_t kReportable = 0xFF;
    if (code == 0) return 0;
    const std::uint32_t lowBits = code & kReportable;
    return static_cast<int>(lowBits == 0 ? kReportable : lowBits);
}

}  // namespace krvcmd
