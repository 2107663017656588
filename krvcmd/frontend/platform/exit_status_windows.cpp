#include "krvcmd/frontend/exit_status.h"

namespace krvcmd {

int ExitStatus(std::uint32_t code) {
    return static_cast<int>(code);
}

}  // namespace krvcmd
