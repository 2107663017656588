#include <cstdlib>

#include "tools/rehearsal/closed_off.h"

namespace embedded::tools {

std::vector<Overlay> FindOverlays(const StandIns& /*standIns*/, const std::vector<std::string>& /*words*/) {
    return {};
}

// Programs find a library on the PATH unless one lies beside them.
std::map<std::string, std::string> EnvironmentFor(const StandIns& standIns) {
    std::string path = standIns.library.parent_path().string();
    if (const char* more = std::getenv("PATH"); more != nullptr) path += std::string(";") + more;
    return {{"KRVSIM_HOME", standIns.farms.string()}, {"PATH", path}};
}

void AddProgramsOnPath(const StandIns& /*standIns*/, std::map<std::string, std::string>& /*environment*/) {}

std::filesystem::path OtherLibrariesFile(const StandIns& standIns) {
    return standIns.programs / "other-libraries";
}

std::string FindObstacle() {
    return "Windows cannot close it off";
}

}  // namespace embedded::tools
