#include "embedded/store/farm_file.h"

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <vector>

#include "embedded/model/refusal.h"
#include "embedded/model/strings.h"
#include "embedded/platform/file_size_signal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/schema.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr std::string_view kPrefix = "server-";
constexpr std::string_view kSuffix = ".db";
constexpr const char* kNewFileMark = ".new-";

bool StandsForItself(char character) {
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9') ||
           character == '-' || character == '_';
}

// What a database file turns out to be.
enum class Kind { Empty, Farm, Foreign };

struct Nature {
    Kind kind;
    int32_t version;
};

Nature Examine(Database& database) {
    const int64_t application = FindValue<int64_t>(database, "PRAGMA application_id").value_or(0);
    const int32_t version = FindValue<int32_t>(database, "PRAGMA user_version").value_or(0);
    if (application == kApplicationId) return {Kind::Farm, version};
    const bool hasContent = application != 0 || version != 0 ||
                            FindValue<int64_t>(database, "SELECT count(*) FROM sqlite_master") != 0;
    return {hasContent ? Kind::Foreign : Kind::Empty, 0};
}

void RefuseForeign(const Database& database, const Nature& nature) {
    const std::string file = PathText(database.GetFile());
    if (nature.kind == Kind::Foreign) throw Refuse(Code::NotAFarm, {file});
    if (nature.version > kSchemaVersion) {
        throw Refuse(Code::NewerFarm, {file, std::to_string(nature.version), std::to_string(kSchemaVersion)});
    }
}

// With a write-ahead log, readers and a writer do not stop each other, and a killed writer leaves nothing
// behind. The switch needs the file for itself and does not wait for others on its own.
void UseWriteAheadLog(Database& database) {
    while (true) {
        const int result =
            sqlite3_exec(database.GetConnection(), "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr);
        if (result == SQLITE_OK) return;
        if ((result & 0xFF) != SQLITE_BUSY || !database.MayStillWait()) database.Fail(result);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

void Prepare(Database& database) {
    if (!database.IsReadOnly() && FindValue<std::string>(database, "PRAGMA journal_mode") != "wal")
        UseWriteAheadLog(database);
    // A commit reaches the operating system before it is acknowledged, which a killed process cannot undo. A
    // power cut may lose the last commits, never the farm.
    database.Execute("PRAGMA synchronous = NORMAL; PRAGMA cache_size = -16384;");
}

void MigrateToPresent(Database& database) {
    InTransaction(database, [&] {
        const Nature nature = Examine(database);
        RefuseForeign(database, nature);
        if (nature.version < kSchemaVersion) Migrate(database, nature.version);
    });
}

void Create(Database& database, const FillFarm& fill) {
    InTransaction(database, [&] {
        const Nature nature = Examine(database);
        RefuseForeign(database, nature);
        if (nature.kind == Kind::Farm) return;  // another process was faster
        Migrate(database, 0);
        fill(database);
    });
}

// The file of a farm that is not complete yet. It has no server's name and is removed with this object.
class UnfinishedFarm {
  public:
    explicit UnfinishedFarm(const std::filesystem::path& farm) : m_farm(farm), m_file(farm) {
        static std::atomic<uint32_t> s_count = 0;
        m_file += Joined({kNewFileMark, std::to_string(ProcessId()), "-", std::to_string(++s_count)});
        RemoveLeftovers();
        Remove();  // left by a killed process that had the same number
        if (const std::error_code failure = CreatePrivateFile(m_file)) {
            throw Refuse(Code::CannotOpenFile, {PathText(farm), failure.message()});
        }
    }
    UnfinishedFarm(const UnfinishedFarm&) = delete;
    UnfinishedFarm& operator=(const UnfinishedFarm&) = delete;
    ~UnfinishedFarm() { Remove(); }

    const std::filesystem::path& GetFile() const { return m_file; }

    // Moves the file to the farm's place; false when anything is there.
    bool MoveToPlace() const {
        const std::error_code failure = MoveToFreePath(m_file, m_farm);
        if (failure == std::errc::file_exists) return false;
        if (failure) throw Refuse(Code::CannotOpenFile, {PathText(m_farm), failure.message()});
        return true;
    }

  private:
    // Those of killed processes. Writing a farm never takes an hour.
    void RemoveLeftovers() const {
        const std::string start = m_farm.filename().string() + kNewFileMark;
        const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
        std::error_code failure;
        std::vector<std::filesystem::path> left;
        for (const auto& entry : std::filesystem::directory_iterator(m_farm.parent_path(), failure)) {
            if (!entry.path().filename().string().starts_with(start)) continue;
            const auto time = entry.last_write_time(failure);
            if (!failure && time < old) left.push_back(entry.path());
        }
        for (const std::filesystem::path& file : left)
            std::filesystem::remove(file, failure);
    }
    void Remove() const noexcept {
        std::error_code ignored;
        std::filesystem::remove(m_file, ignored);
    }

    std::filesystem::path m_farm;
    std::filesystem::path m_file;
};

// Whether a file is there. A link that leads nowhere is refused, like everything that cannot be looked at.
bool IsThere(const std::filesystem::path& farm) {
    std::error_code failure;
    const bool isThere = std::filesystem::exists(farm, failure);
    if (failure) throw Refuse(Code::CannotOpenFile, {PathText(farm), failure.message()});
    if (!isThere && std::filesystem::is_symlink(farm, failure)) {
        throw Refuse(Code::CannotOpenFile, {PathText(farm), "it is a symbolic link that leads nowhere"});
    }
    return isThere;
}

// Processes that share a farm need a file for what they share; on a full disk there is no room for it. A
// process that has the farm for itself needs none.
enum class Sharing { WithOthers, WithNobody };

std::string MembersOnlyText(const std::filesystem::path& folder) {
    return "only members of the group \"" + GroupOf(folder) +
           "\" may use it; have yourself added to it and log in again";
}

// A farm in the shared folder, for somebody else.
void RequireMembership(const std::filesystem::path& farm) {
    const std::filesystem::path folder = SharedFarmFolder();
    if (!folder.empty() && farm.parent_path() == folder && !MayRead(farm))
        throw Refuse(Code::CannotOpenFile, {PathText(farm), MembersOnlyText(folder)});
}

// Whether this user can tell which farms are in the shared folder.
void RequireSharedFolderInSight() {
    const std::filesystem::path folder = SharedFarmFolder();
    if (folder.empty()) return;
    std::error_code failure;
    (void)std::filesystem::exists(folder / FarmFileName("."), failure);
    if (failure) throw Refuse(Code::NoStateFolder, {PathText(folder), MembersOnlyText(folder)});
}

void RequireServerName(std::string_view server) {
    if (!server.empty() && server.size() <= kMaxServerName) return;
    throw Refuse(Code::InvalidServerName, {server.substr(0, kMaxServerName), std::to_string(server.size())});
}

std::unique_ptr<Database> Open(const std::filesystem::path& path, Sharing sharing) {
    auto database = std::make_unique<Database>(path);
    if (sharing == Sharing::WithNobody) database->Execute("PRAGMA locking_mode = EXCLUSIVE");
    const Nature nature = Examine(*database);
    RefuseForeign(*database, nature);
    if (nature.kind == Kind::Empty) return nullptr;
    Prepare(*database);
    if (nature.version < kSchemaVersion) MigrateToPresent(*database);
    return database;
}

}  // namespace

std::string FarmFileName(std::string_view server) {
    std::string name(kPrefix);
    for (const char character : server) {
        name += StandsForItself(character) ? std::string(1, character) : "%" + HexDigits(character);
    }
    return name.append(kSuffix);
}

std::string ServerOfFileName(std::string_view fileName) {
    if (!fileName.starts_with(kPrefix) || !fileName.ends_with(kSuffix)) return {};
    fileName.remove_prefix(kPrefix.size());
    fileName.remove_suffix(kSuffix.size());
    std::string server;
    for (size_t position = 0; position < fileName.size(); ++position) {
        if (fileName[position] != '%') {
            server += fileName[position];
            continue;
        }
        const std::optional<char> byte = ByteOfHexDigits(fileName.substr(position + 1, 2));
        if (!byte.has_value()) return {};
        server += *byte;
        position += 2;
    }
    return server;
}

std::filesystem::path FarmFolder() {
    const StateFolder folder = FindStateFolder();
    if (folder.path.empty()) throw Refuse(Code::NoStateFolder, {"", "the environment names no home folder"});
    if (!folder.path.is_absolute()) {
        const char* reason =
            folder.isChosen ? "KRVSIM_HOME is not an absolute path" : "it is not an absolute path";
        throw Refuse(Code::NoStateFolder, {PathText(folder.path), reason});
    }
    return folder.path;
}

std::filesystem::path ExistingFarmFolder() {
    std::filesystem::path folder = FarmFolder();
    if (!FindStateFolder().isChosen) return folder;
    std::error_code failure;
    if (std::filesystem::exists(folder, failure)) return folder;
    const std::string reason = failure ? failure.message() : "KRVSIM_HOME names a folder that does not exist";
    throw Refuse(Code::NoStateFolder, {PathText(folder), reason});
}

void MakeFarmFolder() {
    const std::filesystem::path folder = FarmFolder();
    if (const std::error_code failure = CreatePrivateFolder(folder)) {
        throw Refuse(Code::NoStateFolder, {PathText(folder), failure.message()});
    }
}

std::filesystem::path SharedFarmFolder() {
    std::filesystem::path folder = SharedStateFolder();
    std::error_code failure;
    if (FindStateFolder().isChosen || !std::filesystem::is_directory(folder, failure)) return {};
    return folder;
}

std::filesystem::path FarmPath(std::string_view server) {
    RequireServerName(server);
    const std::string name = FarmFileName(server);
    if (const std::filesystem::path folder = SharedFarmFolder(); !folder.empty()) {
        std::error_code failure;
        std::filesystem::path farm = folder / name;
        if (std::filesystem::exists(std::filesystem::symlink_status(farm, failure))) return farm;
    }
    return FarmFolder() / name;
}

std::unique_ptr<Database> OpenFarmAt(const std::filesystem::path& path) {
    const FileSizeSignalGuard guard;
    if (IsThere(path)) RequireMembership(path);
    try {
        return Open(path, Sharing::WithOthers);
    } catch (const Refusal& refusal) {
        if (refusal.GetCode() != static_cast<int32_t>(Code::DiskFull)) throw;
    }
    return Open(path, Sharing::WithNobody);
}

bool CreateFarm(std::string_view server, const FillFarm& fill) {
    const std::filesystem::path path = FarmPath(server);
    MakeFarmFolder();
    return CreateFarmAt(path, fill);
}

bool CreateSharedFarm(std::string_view server, const FillFarm& fill) {
    const std::filesystem::path folder = SharedFarmFolder();
    if (folder.empty()) return CreateFarm(server, fill);
    RequireSharedFolderInSight();
    if (IsThere(FarmPath(server))) return false;
    if (!MayChange(folder / "."))
        throw Refuse(Code::NoStateFolder, {PathText(folder), MembersOnlyText(folder)});
    return CreateFarmAt(folder / FarmFileName(server), fill);
}

bool CreateFarmAt(const std::filesystem::path& path, const FillFarm& fill) {
    const FileSizeSignalGuard guard;
    const UnfinishedFarm file(path);
    {
        Database database(file.GetFile(), path);
        // Nobody else sees the file, and nothing of it is kept when it fails.
        database.Execute("PRAGMA journal_mode = MEMORY; PRAGMA cache_size = -16384;");
        Create(database, fill);
    }
    return file.MoveToPlace();
}

std::unique_ptr<Database> OpenFarm(std::string_view server, const FillFarm& fill) {
    const FileSizeSignalGuard guard;
    const std::filesystem::path path = FarmPath(server);
    const std::filesystem::path shared = SharedFarmFolder();
    if (shared.empty() || path.parent_path() != shared) (void)ExistingFarmFolder();
    const bool isThere = IsThere(path);
    if (!isThere && fill != nullptr) CreateFarm(server, fill);
    if (isThere || fill != nullptr) {
        if (auto database = OpenFarmAt(path)) return database;
    }
    if (fill == nullptr) {
        RequireSharedFolderInSight();
        throw Refuse(Code::UnknownServer, {server});
    }
    // An empty file that somebody else put there.
    auto database = std::make_unique<Database>(path);
    RefuseForeign(*database, Examine(*database));
    Prepare(*database);
    Create(*database, fill);
    return database;
}

}  // namespace embedded
