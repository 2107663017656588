#include "tests/reliability/support/model_library.h"

#include <cstring>

namespace krvcmd::reliability {

std::string Result::ResultLine(bool quiet) const {
    switch (kind) {
        case Kind::Ok:
            return quiet ? "" : "Operation completed successfully.\n";
        case Kind::Service:
            return "KRV error " + std::to_string(code) + ": " + text + "\n";
        case Kind::System:
            break;
    }
    if (code == 2) return "Error: No such item present.\n";
    if (code == 22) {
        return "Error: Invalid command line parameter. Specify help to get further information.\n";
    }
    return "OS error " + std::to_string(code) + ": " + std::strerror(static_cast<int>(code)) + "\n";
}

int Result::ExitStatus() const {
    if (code == 0) return 0;
    return code % 256 == 0 ? 255 : static_cast<int>(code % 256);
}

}  // namespace krvcmd::reliability
