#include "embedded/store/farm_file.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "embedded/model/joined.h"
#include "embedded/model/refusal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/schema.h"
#include "embedded/store/transaction.h"

namespace embedded {
namespace {

constexpr std::string_view kPrefix = "server-";
constexpr std::string_view kSuffix = ".db";
constexpr const char* kMarkOfNew = ".new-";
constexpr std::string_view kHexDigits = "0123456789abcdef";

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
    const int64_t application = database.ReadNumber("PRAGMA application_id");
    const auto version = static_cast<int32_t>(database.ReadNumber("PRAGMA user_version"));
    if (application == kApplicationId) return {Kind::Farm, version};
    const bool hasContent =
        application != 0 || version != 0 || database.ReadNumber("SELECT count(*) FROM sqlite_master") != 0;
    return {hasContent ? Kind::Foreign : Kind::Empty, 0};
}

void RefuseForeign(const Database& database, const Nature& nature) {
    const std::string file = database.GetFile().string();
    if (nature.kind == Kind::Foreign) throw Refuse(Code::NotAFarm, {file});
    if (nature.version > kSchemaVersion) {
        throw Refuse(Code::NewerFarm, {file, std::to_string(nature.version), std::to_string(kSchemaVersion)});
    }
}

// With a write-ahead log, readers and a writer do not stop each other, and a killed writer leaves
// nothing behind. The switch needs the file for itself and does not wait for others by its own.
void UseWriteAheadLog(Database& database) {
    while (true) {
        const StatementHandle pragma = database.Prepare("PRAGMA journal_mode = WAL");
        const int result = sqlite3_step(pragma.get());
        if (result == SQLITE_ROW || result == SQLITE_DONE) return;
        if ((result & 0xFF) != SQLITE_BUSY || !database.MayStillWait()) database.Fail(result);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

void Prepare(Database& database) {
    if (!database.IsReadOnly() && database.ReadText("PRAGMA journal_mode") != "wal")
        UseWriteAheadLog(database);
    // A commit reaches the operating system before it is acknowledged, which a killed process
    // cannot undo. Waiting for the disk too would guard the simulated world from power cuts.
    database.Execute("PRAGMA synchronous = NORMAL; PRAGMA cache_size = -16384;");
}

void BringForward(Database& database) {
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

// A farm that is being made: a file that is no server's, gone with this object.
class FileInTheMaking {
  public:
    explicit FileInTheMaking(const std::filesystem::path& farm) : m_farm(farm), m_file(farm) {
        static std::atomic<uint32_t> s_count = 0;
        m_file += Joined({kMarkOfNew, std::to_string(ProcessId()), "-", std::to_string(++s_count)});
        const std::filesystem::path folder = farm.parent_path();
        if (const std::error_code failure = CreatePrivateFolder(folder)) {
            throw Refuse(Code::NoStateFolder, {folder.string(), failure.message()});
        }
        RemoveLeftOnes();
        Remove();  // what a killed process of the same number has left
        if (const std::error_code failure = CreatePrivateFile(m_file)) {
            throw Refuse(Code::CannotOpenFile, {farm.string(), failure.message()});
        }
    }
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;
    ~FileInTheMaking() { Remove(); }

    const std::filesystem::path& GetFile() const { return m_file; }

    // Gives it its place, unless another file has it.
    bool Place() const {
        std::error_code failure;
        std::filesystem::create_hard_link(m_file, m_farm, failure);
        if (!failure) return true;
        std::error_code ignored;
        if (std::filesystem::exists(m_farm, ignored)) return false;
        // Not every file system knows a second name for a file.
        std::filesystem::rename(m_file, m_farm, failure);
        if (failure) throw Refuse(Code::CannotOpenFile, {m_farm.string(), failure.message()});
        return true;
    }

  private:
    // Those of killed processes. No farm takes an hour to be made.
    void RemoveLeftOnes() const {
        const std::string start = m_farm.filename().string() + kMarkOfNew;
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

}  // namespace

std::string FarmFileName(std::string_view server) {
    std::string name(kPrefix);
    for (const char character : server) {
        if (StandsForItself(character)) {
            name += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        name += '%';
        name += kHexDigits[byte >> 4U];
        name += kHexDigits[byte & 0xFU];
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
        if (position + 2 >= fileName.size()) return {};
        const size_t high = kHexDigits.find(fileName[position + 1]);
        const size_t low = kHexDigits.find(fileName[position + 2]);
        if (high == std::string_view::npos || low == std::string_view::npos) return {};
        server += static_cast<char>(high << 4U | low);
        position += 2;
    }
    return server;
}

std::filesystem::path FarmPath(std::string_view server) {
    if (server.empty() || server.size() > kMaxServerName) {
        throw Refuse(Code::InvalidServerName,
                     {server.substr(0, kMaxServerName), std::to_string(server.size())});
    }
    const std::filesystem::path folder = StateFolder();
    if (folder.empty()) throw Refuse(Code::NoStateFolder, {"", "the environment names no home folder"});
    return folder / FarmFileName(server);
}

std::unique_ptr<Database> OpenFarmAt(const std::filesystem::path& path) {
    auto database = std::make_unique<Database>(path);
    const Nature nature = Examine(*database);
    RefuseForeign(*database, nature);
    if (nature.kind == Kind::Empty) return nullptr;
    Prepare(*database);
    if (nature.version < kSchemaVersion) BringForward(*database);
    return database;
}

bool CreateFarm(std::string_view server, const FillFarm& fill) {
    const std::filesystem::path path = FarmPath(server);
    const FileInTheMaking file(path);
    {
        Database database(file.GetFile(), path);
        // Nobody else sees the file, and nothing of it is kept when it fails.
        database.Execute("PRAGMA journal_mode = MEMORY; PRAGMA cache_size = -16384;");
        Create(database, fill);
    }
    return file.Place();
}

std::unique_ptr<Database> OpenFarm(std::string_view server, const FillFarm& fill) {
    const std::filesystem::path path = FarmPath(server);
    std::error_code failure;
    const bool isThere = std::filesystem::exists(path, failure);
    if (failure) throw Refuse(Code::CannotOpenFile, {path.string(), failure.message()});
    if (!isThere && fill != nullptr) CreateFarm(server, fill);
    if (isThere || fill != nullptr) {
        if (auto database = OpenFarmAt(path)) return database;
    }
    if (fill == nullptr) throw Refuse(Code::UnknownServer, {server});
    // An empty file that somebody else has put there.
    auto database = std::make_unique<Database>(path);
    RefuseForeign(*database, Examine(*database));
    Prepare(*database);
    Create(*database, fill);
    return database;
}

}  // namespace embedded
