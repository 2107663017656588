#include "embedded/farms/servers.h"

#include <algorithm>
#include <filesystem>

#include "embedded/farms/demonstration.h"
#include "embedded/platform/platform.h"
#include "embedded/store/farm_file.h"

namespace embedded {

std::unique_ptr<Database> OpenServer(const std::string& server) {
    if (!IsDemonstrationServer(server)) return OpenFarm(server, nullptr);
    return OpenFarm(server, [&](Database& database) { FillDemonstrationFarm(database, server); });
}

std::vector<std::string> ListServers() {
    std::vector<std::string> servers;
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator(StateFolder(), failure)) {
        std::string server = ServerOfFileName(entry.path().filename().string());
        if (!server.empty()) servers.push_back(std::move(server));
    }
    std::ranges::sort(servers);
    return servers;
}

}  // namespace embedded
