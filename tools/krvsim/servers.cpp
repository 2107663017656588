#include "embedded/farms/servers.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/places.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

struct FileFacts {
    uintmax_t size = 0;
    std::optional<std::filesystem::file_time_type> time;
};

// The farm's file and its write-ahead log. No time when there is nothing to look at behind a link.
FileFacts FileFactsOf(const std::filesystem::path& farm) {
    FileFacts facts;
    for (const char* suffix : {"", "-wal"}) {
        std::filesystem::path file = farm;
        file += suffix;
        std::error_code failure;
        const auto size = std::filesystem::file_size(file, failure);
        if (failure) continue;
        facts.size += size;
        const auto time = std::filesystem::last_write_time(file, failure);
        if (!failure) facts.time = facts.time.has_value() ? std::max(*facts.time, time) : time;
    }
    return facts;
}

// "running", "stopped", "empty", or why the farm cannot be used; the counts only where there is a farm.
struct FarmFacts {
    std::string state = "empty";
    std::string jukeboxes = "-";
    std::string volumes = "-";
};

FarmFacts FarmFactsOf(const std::filesystem::path& path) {
    FarmFacts facts;
    try {
        const std::unique_ptr<Database> database = OpenFarmAt(path);
        if (database == nullptr) return facts;
        const auto find = [&](Sql statement) { return FindValue<int64_t>(*database, statement).value_or(0); };
        facts.state = find("SELECT coalesce(max(running), 0) FROM server") == 1 ? "running" : "stopped";
        facts.jukeboxes = std::to_string(find("SELECT count(*) FROM jukebox"));
        facts.volumes = std::to_string(find("SELECT count(*) FROM volume WHERE id > 0"));
    } catch (const Refusal& refusal) {
        facts.state = "unusable: " + refusal.GetText();
    }
    return facts;
}

struct ServersOptions {};

void Servers(const ServersOptions& /*none*/, const Streams& streams) {
    const std::vector<std::string> servers = ListServers();
    const std::filesystem::path shared = SharedFarmFolder();
    const std::string folder = PathText(FarmFolder()) + (shared.empty() ? "" : " and " + PathText(shared));
    if (servers.empty()) {
        streams.out << "There are no servers in " << folder << ".\n";
        streams.out << PlacesText("Folder", folder) << '\n';
        return;
    }
    TextTable table({"Server", "State", "Jukeboxes", "Volumes", "Size", "Last use"});
    for (const std::string& server : servers) {
        const std::filesystem::path path = FarmPath(server);
        const FileFacts file = FileFactsOf(path);
        const FarmFacts farm = FarmFactsOf(path);
        table.Add({server, farm.state, farm.jukeboxes, farm.volumes,
                   file.time.has_value() ? SizeText(file.size) : "-",
                   file.time.has_value() ? TimeText(*file.time) : "-"});
    }
    table.Write(streams.out);
    streams.out << PlacesText("Folder", folder) << '\n';
}

}  // namespace

void AddServers(CommandLine& line) {
    line.Add(line.GetTool(), "servers", "List the servers.", Servers);
}

}  // namespace embedded::tools
