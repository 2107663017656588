#include "simulator/krvsim/new_farm.h"

#include <filesystem>

#include "simulator/krvsim/failure.h"
#include "simulator/layout/farm_writer.h"
#include "simulator/store/farm_file.h"
#include "simulator/store/transaction.h"

namespace krvsim {
namespace {

std::string HasFarm(const std::string& server, const std::filesystem::path& file) {
    return "server \"" + server + "\" has a farm already, in " + file.string() + " (--force replaces it)";
}

}  // namespace

void RequireRoom(const std::string& server, Existing existing) {
    if (existing == Existing::Replace) return;
    const std::filesystem::path path = FarmPath(server);
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored) && OpenFarmAt(path) != nullptr)
        throw ToolFailure(HasFarm(server, path));
}

void MakeFarm(const std::string& server, Existing existing, const std::function<void(Database&)>& fill) {
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

}  // namespace krvsim
