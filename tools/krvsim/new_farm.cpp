#include "tools/krvsim/new_farm.h"

#include <filesystem>

#include "embedded/farms/farm_writer.h"
#include "embedded/model/refusal.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/transaction.h"
#include "tools/common/command.h"
#include "tools/common/interruption.h"

namespace embedded::tools {
namespace {

std::string HasFarm(const std::string& server, const std::filesystem::path& file) {
    return "server \"" + server + "\" has a farm already, in " + file.string() + " (--force replaces it)";
}

// The database asks between its steps whether to go on.
int MustStop(void* /*nothing*/) {
    return InterruptionNoted::IsInterrupted() ? 1 : 0;
}

// Fills a database; Ctrl-C ends it, and the caller undoes what is there by then.
void FillUnlessInterrupted(Database& database, const FillFarm& fill) {
    constexpr int kSteps = 10'000;
    const InterruptionNoted interruption;
    sqlite3_progress_handler(database.GetConnection(), kSteps, &MustStop, nullptr);
    try {
        fill(database);
    } catch (const Refusal&) {
        sqlite3_progress_handler(database.GetConnection(), 0, nullptr, nullptr);
        if (InterruptionNoted::IsInterrupted()) throw ToolFailure("interrupted; nothing was changed");
        throw;
    }
    sqlite3_progress_handler(database.GetConnection(), 0, nullptr, nullptr);
}

}  // namespace

void RequireRoom(const std::string& server, Existing existing) {
    if (existing == Existing::Replace) return;
    const std::filesystem::path path = FarmPath(server);
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored) && OpenFarmAt(path) != nullptr)
        throw ToolFailure(HasFarm(server, path));
}

void MakeFarm(const std::string& server, Existing existing, const FillFarm& write) {
    const FillFarm fill = [&](Database& database) { FillUnlessInterrupted(database, write); };
    std::error_code ignored;
    if (!std::filesystem::exists(FarmPath(server), ignored) && CreateFarm(server, fill)) return;
    bool isNew = false;
    const std::unique_ptr<Database> database = OpenFarm(server, [&](Database& empty) {
        fill(empty);
        isNew = true;
    });
    if (isNew) return;
    if (existing == Existing::Keep) throw ToolFailure(HasFarm(server, database->GetFile()));
    database->StartWaiting();
    InTransaction(*database, [&] { ReplaceFarm(*database, server, fill); });
}

}  // namespace embedded::tools
