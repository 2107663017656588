#include "tools/rehearsal/private_copy.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <system_error>

#include "embedded/farms/farm_reader.h"
#include "embedded/platform/platform.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"
#include "tools/common/streams.h"
#include "tools/farm_diff/farm_diff.h"
#include "tools/rehearsal/closed_off.h"
#include "tools/rehearsal/process.h"
#include "tools/rehearsal/simulated_library.h"

namespace embedded::tools {
namespace {

namespace fs = std::filesystem;

constexpr Sql kCounts = R"sql(
    SELECT function, count(*), sum(succeeded = 0) FROM journal
    WHERE id > (SELECT journal_start FROM server) GROUP BY function
)sql";

constexpr Sql kSwitchOn = R"sql(
    UPDATE server SET journal_limit = 1000000, journal_start = coalesce((SELECT max(id) FROM journal), 0)
)sql";

fs::path MakeFolder() {
    static std::atomic<uint32_t> s_count = 0;
    std::error_code failure;
    const fs::path base = fs::canonical(fs::temp_directory_path(), failure);
    if (failure) throw ToolFailure("there is no folder for temporary files: " + failure.message());
    while (true) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        fs::path folder = base / ("krvsim-run-" + std::to_string(ProcessId()) + "-" +
                                  std::to_string(++s_count) + "-" + std::to_string(now % 1'000'000));
        // One that is there already may belong to somebody else.
        if (fs::exists(fs::symlink_status(folder, failure))) continue;
        if (const std::error_code reason = CreatePrivateFolder(folder))
            throw ToolFailure(PathText(folder) + ": " + reason.message());
        return folder;
    }
}

std::vector<std::string> ReadLines(const fs::path& file) {
    std::vector<std::string> lines;
    std::ifstream stream(file, std::ios::binary);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

}  // namespace

PrivateCopy::PrivateCopy(std::string server, const fs::path& library)
    : m_server(std::move(server)), m_folder(MakeFolder()) {
    std::error_code failure;
    for (const char* part : {"farms", "programs", "lib"})
        fs::create_directory(m_folder / part, failure);
    m_library = m_folder / "lib" / library.filename();
    failure = PutLibrary(library, m_library);
    if (failure) throw ToolFailure(PathText(m_library) + ": " + failure.message());
}

PrivateCopy::~PrivateCopy() {
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

fs::path PrivateCopy::GetFarm() const {
    return GetFarmFolder() / FarmFileName(m_server);
}

std::vector<std::string> PrivateCopy::FindOtherServers() const {
    std::vector<std::string> servers;
    std::error_code failure;
    for (const auto& entry : fs::directory_iterator(GetFarmFolder(), failure)) {
        std::string server = ServerOfFileName(entry.path().filename().string());
        if (!server.empty() && server != m_server) servers.push_back(std::move(server));
    }
    return servers;
}

CallCounts CountCalls(Database& database) {
    CallCounts counts;
    Statement row(database, kCounts);
    while (row.Next()) {
        const auto [function, calls, failed] = row.Read<std::string, int64_t, int64_t>();
        counts.byFunction.emplace(function, calls);
        counts.all += calls;
        counts.failed += failed;
    }
    return counts;
}

void StartJournal(Database& database) {
    InTransaction(database, [&] {
        Run(database, "DELETE FROM journal");
        Run(database, kSwitchOn);
    });
}

Rehearsal Rehearse(const PrivateCopy& copy, const RehearsedCommand& command, const Farm& before) {
    const StandIns standIns{copy.GetLibrary(), copy.GetFarmFolder(), copy.GetProgramFolder()};
    ProcessRequest request;
    request.words = command.words;
    request.closedOff = command.isolation == Isolation::ClosedOff;
    request.environment = EnvironmentFor(standIns);
    if (request.closedOff) {
        request.overlays = FindOverlays(standIns, command.words);
    } else {
        AddProgramsOnPath(standIns, request.environment);
    }
    request.output = command.output;
    request.record = command.record;
    const auto start = std::chrono::steady_clock::now();
    Rehearsal result;
    RunOutcome& outcome = result.outcome;
    outcome.status = RunProcess(request);
    outcome.duration =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    const std::unique_ptr<Database> database = OpenFarmAt(copy.GetFarm());
    if (database == nullptr) throw ToolFailure("the copy of the farm is empty");
    result.after = ReadFarm(*database);
    outcome.plan = CompareFarms(before, result.after);
    outcome.calls = CountCalls(*database);
    outcome.otherServers = copy.FindOtherServers();
    outcome.otherLibraries = ReadLines(OtherLibrariesFile(standIns));
    return result;
}

std::vector<CallOfRun> ListCalls(Database& database, const std::string& function,
                                 const std::function<std::string(const StoredJournalEntry&)>& itemText) {
    std::vector<CallOfRun> calls;
    std::map<std::string, int64_t> counts;
    ReadJournal(database, 0, [&](const StoredJournalEntry& entry) {
        const int64_t nth = ++counts[entry.function];
        if (function.empty() || function == entry.function)
            calls.push_back({entry.function, nth, itemText(entry)});
    });
    return calls;
}

}  // namespace embedded::tools
