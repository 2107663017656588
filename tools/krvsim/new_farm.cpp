#include "tools/krvsim/new_farm.h"

#include <filesystem>

#include "embedded/farms/farm_writer.h"
#include "embedded/farms/servers.h"
#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/database.h"
#include "embedded/store/farm_file.h"
#include "tools/common/long_task.h"

namespace embedded::tools {
namespace {

std::string HasFarmText(const std::string& server, const std::filesystem::path& file) {
    return "server \"" + server + "\" already has a farm, in " + PathText(file) + " (--force replaces it)";
}

// The database asks after every few steps whether to stop.
int MustStop(void* /*nothing*/) {
    return InterruptGuard::IsInterrupted() ? 1 : 0;
}

// Fills a database until Ctrl-C, which throws; the caller undoes what is there by then.
void FillUnlessInterrupted(Database& database, const FillFarm& fill) {
    constexpr int kSteps = 10'000;
    const InterruptGuard guard;
    sqlite3_progress_handler(database.GetConnection(), kSteps, &MustStop, nullptr);
    try {
        fill(database);
    } catch (const Refusal&) {
        sqlite3_progress_handler(database.GetConnection(), 0, nullptr, nullptr);
        if (InterruptGuard::IsInterrupted()) throw ToolFailure("interrupted; nothing was changed");
        throw;
    }
    sqlite3_progress_handler(database.GetConnection(), 0, nullptr, nullptr);
}

}  // namespace

void AddForceOption(CLI::App& command, Existing& existing) {
    command.add_flag_callback(
        "--force", [&existing] { existing = Existing::Replace; }, "replace an existing farm");
}

void RequireRoom(const std::string& server, Existing existing) {
    MakeFarmFolder();
    const std::filesystem::path path = FarmPath(server);
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) return;
    const std::unique_ptr<Database> database = OpenFarmAt(path);
    if (database == nullptr) return;
    RequireSimulated(*database, server);
    if (existing == Existing::Keep) throw ToolFailure(HasFarmText(server, path));
}

void MakeFarm(const std::string& server, Existing existing, const FillFarm& write) {
    const FillFarm fill = [&](Database& database) { FillUnlessInterrupted(database, write); };
    std::error_code ignored;
    MakeFarmFolder();
    if (!std::filesystem::exists(std::filesystem::symlink_status(FarmPath(server), ignored)) &&
        CreateFarm(server, fill)) {
        return;
    }
    bool isNew = false;
    const std::unique_ptr<Database> database = OpenFarm(server, [&](Database& empty) {
        fill(empty);
        isNew = true;
    });
    if (isNew) return;
    RequireSimulated(*database, server);
    if (existing == Existing::Keep) throw ToolFailure(HasFarmText(server, database->GetFile()));
    database->StartWaiting();
    InTransaction(*database, [&] { ReplaceFarm(*database, server, fill); });
}

}  // namespace embedded::tools
