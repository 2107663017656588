// krvsim servers: which servers there are.
#include "embedded/farms/servers.h"

#include <ctime>
#include <filesystem>

#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/farm_file.h"
#include "tools/common/command.h"
#include "tools/common/local_time.h"
#include "tools/common/text_table.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/farm_query.h"

namespace embedded::tools {
namespace {

struct FileFacts {
    uintmax_t size = 0;
    std::filesystem::file_time_type time = std::filesystem::file_time_type::min();
};

// The farm's file and what lies beside it while it is in use.
FileFacts FactsOf(const std::filesystem::path& farm) {
    FileFacts facts;
    for (const char* suffix : {"", "-wal"}) {
        std::filesystem::path file = farm;
        file += suffix;
        std::error_code failure;
        const auto size = std::filesystem::file_size(file, failure);
        if (failure) continue;
        facts.size += size;
        const auto time = std::filesystem::last_write_time(file, failure);
        if (!failure) facts.time = std::max(facts.time, time);
    }
    return facts;
}

std::string SizeText(uintmax_t bytes) {
    constexpr uintmax_t kKilo = 1024;
    if (bytes < kKilo) return std::to_string(bytes) + " B";
    if (bytes < kKilo * kKilo) return std::to_string((bytes + kKilo / 2) / kKilo) + " KiB";
    return std::to_string((bytes + kKilo * kKilo / 2) / (kKilo * kKilo)) + " MiB";
}

}  // namespace

void Servers(const Streams& streams) {
    const std::vector<std::string> servers = ListServers();
    if (servers.empty()) {
        streams.out << "There are no servers in " << StateFolder().string() << ".\n";
        return;
    }
    TextTable table({"Server", "State", "Jukeboxes", "Volumes", "Size", "Last use"});
    for (const std::string& server : servers) {
        const std::filesystem::path path = FarmPath(server);
        const FileFacts facts = FactsOf(path);
        std::string state = "empty";
        std::string jukeboxes = "-";
        std::string volumes = "-";
        try {
            if (const std::unique_ptr<Database> database = OpenFarmAt(path)) {
                const bool isRunning = FindNumber(*database, "SELECT running FROM server", {}) == 1;
                state = isRunning ? "running" : "stopped";
                jukeboxes = std::to_string(*FindNumber(*database, "SELECT count(*) FROM jukebox", {}));
                volumes =
                    std::to_string(*FindNumber(*database, "SELECT count(*) FROM volume WHERE id > 0", {}));
            }
        } catch (const Refusal& refusal) {
            state = "unusable: " + refusal.GetText();
        }
        table.Add({server, state, jukeboxes, volumes, SizeText(facts.size), TimeText(facts.time)});
    }
    table.Write(streams.out);
}

}  // namespace embedded::tools
