#include "embedded/farms/snapshots.h"

#include <algorithm>
#include <system_error>

#include "embedded/farms/servers.h"
#include "embedded/model/refusal.h"
#include "embedded/model/strings.h"
#include "embedded/platform/file_size_signal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr std::string_view kPrefix = "snapshot-";
constexpr std::string_view kSuffix = ".db";
constexpr const char* kCompanions[] = {"", "-wal", "-shm"};

// The name of a server's file without its prefix and its ending.
std::string Encoded(std::string_view name) {
    constexpr std::string_view kServerPrefix = "server-";
    const std::string file = FarmFileName(name);
    return file.substr(kServerPrefix.size(), file.size() - kServerPrefix.size() - kSuffix.size());
}

// In the names of both, an "@" is written as "%40".
std::string SnapshotPrefix(std::string_view server) {
    return std::string(kPrefix) + Encoded(server) + "@";
}

std::filesystem::path WithSuffix(std::filesystem::path file, const std::string& suffix) {
    file += suffix;
    return file;
}

// A file that is removed with this object.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::filesystem::path file) : m_file(std::move(file)) { Remove(); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { Remove(); }

    const std::filesystem::path& Get() const { return m_file; }

  private:
    void Remove() const noexcept {
        std::error_code ignored;
        std::filesystem::remove(m_file, ignored);
    }

    std::filesystem::path m_file;
};

// Everything at once: the pages of one moment, whatever others commit meanwhile.
void CopyPages(Database& from, Database& to) {
    const FileSizeSignalGuard guard;
    sqlite3_backup* backup = sqlite3_backup_init(to.GetConnection(), "main", from.GetConnection(), "main");
    if (backup == nullptr) to.Fail(sqlite3_errcode(to.GetConnection()));
    const int step = sqlite3_backup_step(backup, -1);
    const int finish = sqlite3_backup_finish(backup);
    if (step != SQLITE_DONE && (step == SQLITE_CORRUPT || step == SQLITE_NOTADB)) from.Fail(step);
    if (step != SQLITE_DONE) to.Fail(step);
    if (finish != SQLITE_OK) to.Fail(finish);
}

bool IsUnusable(const Refusal& refusal) {
    return refusal.GetCode() == static_cast<int32_t>(Code::FarmDamaged) ||
           refusal.GetCode() == static_cast<int32_t>(Code::NotAFarm);
}

void MoveToPlace(const std::filesystem::path& file, const std::filesystem::path& place) {
    if (const std::error_code failure = MoveToFreePath(file, place))
        throw Refuse(Code::CannotOpenFile, {PathText(place), failure.message()});
}

// Returns where the farm's file is afterwards.
std::filesystem::path MoveOutOfTheWay(const std::filesystem::path& farm) {
    int number = 1;
    const auto aside = [&] { return WithSuffix(farm, ".unusable-" + std::to_string(number)); };
    std::error_code ignored;
    while (std::filesystem::exists(std::filesystem::symlink_status(aside(), ignored)))
        ++number;
    MoveToPlace(farm, aside());
    for (const char* suffix : {"-wal", "-shm"})
        std::filesystem::rename(WithSuffix(farm, suffix), WithSuffix(aside(), suffix), ignored);
    return aside();
}

int64_t EpochOf(Database& database) {
    return FindValue<int64_t>(database, "SELECT max(epoch) FROM server").value_or(0);
}

// The farm that the server has, or null: there is none, or it cannot be used.
std::unique_ptr<Database> OpenUsable(const std::string& server, bool& isUnusable) {
    std::error_code ignored;
    const std::filesystem::path path = FarmPath(server);
    isUnusable = false;
    if (!std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) return nullptr;
    try {
        auto database = OpenFarmAt(path);
        if (database == nullptr) isUnusable = true;
        if (database != nullptr) (void)EpochOf(*database);
        return database;
    } catch (const Refusal& refusal) {
        if (!IsUnusable(refusal)) throw;
        isUnusable = true;
        return nullptr;
    }
}

void RequireDetached(Database& database, const std::string& server) {
    if (FindValue<int64_t>(database, "SELECT jukebox FROM changer LIMIT 1").has_value())
        throw Refuse(Code::NotSimulated, {server});
}

// Fails while another connection uses the farm.
void RequireUnused(Database& database) {
    const int result =
        sqlite3_exec(database.GetConnection(), "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
    if (result == SQLITE_OK) return;
    if ((result & 0xFF) == SQLITE_BUSY || (result & 0xFF) == SQLITE_LOCKED) database.Fail(result);
}

}  // namespace

std::filesystem::path SnapshotPath(std::string_view server, std::string_view name) {
    (void)FarmPath(server);
    (void)FarmPath(name);
    return FarmFolder() / (SnapshotPrefix(server) + Encoded(name) + std::string(kSuffix));
}

std::vector<std::string> ListSnapshots(std::string_view server) {
    const std::string prefix = SnapshotPrefix(server);
    std::vector<std::string> names;
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator(ExistingFarmFolder(), failure)) {
        const std::string file = entry.path().filename().string();
        if (!file.starts_with(prefix) || !file.ends_with(kSuffix)) continue;
        std::string name = ServerOfFileName("server-" + file.substr(prefix.size()));
        if (!name.empty()) names.push_back(std::move(name));
    }
    std::ranges::sort(names);
    return names;
}

bool CopyFarm(Database& farm, const std::filesystem::path& file) {
    std::error_code ignored;
    if (std::filesystem::exists(std::filesystem::symlink_status(file, ignored))) return false;
    const TemporaryFile copy(WithSuffix(file, Joined({".new-", std::to_string(ProcessId())})));
    if (const std::error_code failure = CreatePrivateFile(copy.Get()))
        throw Refuse(Code::CannotOpenFile, {PathText(file), failure.message()});
    {
        Database target(copy.Get(), file);
        // Nobody else sees the file, and nothing of it is kept when it fails.
        target.Execute("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF;");
        farm.StartWaiting();
        CopyPages(farm, target);
    }
    const std::error_code failure = MoveToFreePath(copy.Get(), file);
    if (failure == std::errc::file_exists) return false;
    if (failure) throw Refuse(Code::CannotOpenFile, {PathText(file), failure.message()});
    return true;
}

std::filesystem::path RestoreFarm(const std::string& server, const std::filesystem::path& copy) {
    const std::unique_ptr<Database> source = OpenFarmAt(copy);
    if (source == nullptr) throw Refuse(Code::NotAFarm, {PathText(copy)});
    RequireSimulated(*source, server);
    bool isUnusable = false;
    const std::unique_ptr<Database> farm = OpenUsable(server, isUnusable);
    const std::filesystem::path path = FarmPath(server);
    if (farm == nullptr) {
        std::filesystem::path aside = isUnusable ? MoveOutOfTheWay(path) : std::filesystem::path();
        if (!CopyFarm(*source, path))
            throw Refuse(Code::CannotOpenFile, {PathText(path), "another process has just made it"});
        return aside;
    }
    RequireSimulated(*farm, server);
    const int64_t epoch = EpochOf(*farm);
    farm->StartWaiting();
    CopyPages(*source, *farm);
    InTransaction(*farm, [&] { Run(*farm, "UPDATE server SET epoch = max(epoch, ?1) + 1", epoch); });
    return {};
}

void RemoveFarm(const std::string& server) {
    const std::filesystem::path path = FarmPath(server);
    std::error_code failure;
    if (!std::filesystem::exists(std::filesystem::symlink_status(path, failure)))
        throw Refuse(Code::UnknownServer, {server});
    try {
        const std::unique_ptr<Database> database = OpenFarmAt(path);
        if (database != nullptr) RequireDetached(*database, server);
        if (database != nullptr) RequireUnused(*database);
    } catch (const Refusal& refusal) {
        // The file of another program is not ours to remove.
        if (refusal.GetCode() != static_cast<int32_t>(Code::FarmDamaged)) throw;
    }
    for (const char* suffix : kCompanions) {
        const std::filesystem::path file = WithSuffix(path, suffix);
        std::filesystem::remove(file, failure);
        if (failure) throw Refuse(Code::CannotOpenFile, {PathText(file), failure.message()});
    }
}

}  // namespace embedded
