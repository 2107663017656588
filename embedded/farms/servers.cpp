#include "embedded/farms/servers.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <system_error>

#include "embedded/farms/farm_writer.h"
#include "embedded/layout/layout_reader.h"
#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr std::string_view kDemonstrationServers[] = {".", "my_server", "MyServer", "My Server",
                                                      "sales server"};

std::set<std::string> ServersIn(const std::filesystem::path& folder, std::error_code& failure) {
    std::set<std::string> servers;
    for (const auto& entry : std::filesystem::directory_iterator(folder, failure)) {
        std::string server = ServerOfFileName(entry.path().filename().string());
        if (!server.empty()) servers.insert(std::move(server));
    }
    return servers;
}

}  // namespace

std::unique_ptr<Database> OpenServer(const std::string& server) {
    std::unique_ptr<Database> database = OpenServerToCheck(server);
    if (!FindValue<int64_t>(*database, "SELECT id FROM server").has_value()) {
        throw Refuse(Code::FarmDamaged,
                     {database->GetFile().string(), "the description of its server is missing"});
    }
    return database;
}

std::unique_ptr<Database> OpenSimulatedServer(const std::string& server) {
    std::unique_ptr<Database> database = OpenServer(server);
    RequireSimulated(*database, server);
    return database;
}

void RequireSimulated(Database& database, const std::string& server) {
    if (FindValue<bool>(database, "SELECT kind FROM server").value_or(false)) {
        throw Refuse(Code::NotSimulated, {server});
    }
}

std::unique_ptr<Database> OpenServerToCheck(const std::string& server) {
    if (!IsDemonstrationServer(server)) return OpenFarm(server, nullptr);
    return OpenFarm(server, [&](Database& database) { FillDemonstrationFarm(database, server); });
}

std::vector<std::string> ListServers() {
    std::error_code failure;
    const std::filesystem::path folder = ExistingFarmFolder();
    std::set<std::string> servers = ServersIn(folder, failure);
    if (failure && failure != std::errc::no_such_file_or_directory)
        throw Refuse(Code::NoStateFolder, {PathText(folder), failure.message()});
    if (const std::filesystem::path shared = SharedFarmFolder(); !shared.empty())
        servers.merge(ServersIn(shared, failure));
    return {servers.begin(), servers.end()};
}

bool IsDemonstrationServer(std::string_view server) {
    return std::ranges::find(kDemonstrationServers, server) != std::end(kDemonstrationServers);
}

void FillDemonstrationFarm(Database& database, std::string_view server) {
    const LayoutResult layout = ReadLayout(DemonstrationLayout());
    if (!layout.problems.empty()) {
        throw Refuse(Code::InternalFailure,
                     {"KrvSessionCreate", ProblemText("demonstration.toml", layout.problems.front())});
    }
    WriteFarm(database, server, layout.farm);
}

}  // namespace embedded
