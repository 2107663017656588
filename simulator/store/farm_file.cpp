#include "simulator/store/farm_file.h"

#include <thread>

#include "simulator/platform/platform.h"
#include "simulator/store/schema.h"
#include "simulator/store/transaction.h"
#include "simulator/world/refusal.h"

namespace krvsim {
namespace {

constexpr std::string_view kPrefix = "server-";
constexpr std::string_view kSuffix = ".db";
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

void CreateFile(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.parent_path();
    if (const std::error_code failure = CreatePrivateFolder(folder)) {
        throw Refuse(Code::NoStateFolder, {folder.string(), failure.message()});
    }
    if (const std::error_code failure = CreatePrivateFile(path)) {
        throw Refuse(Code::CannotOpenFile, {path.string(), failure.message()});
    }
}

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

std::unique_ptr<Database> OpenFarm(std::string_view server, const FillFarm& fill) {
    const std::filesystem::path path = FarmPath(server);
    std::error_code failure;
    if (std::filesystem::exists(path, failure)) {
        if (auto database = OpenFarmAt(path)) return database;
    }
    if (failure) throw Refuse(Code::CannotOpenFile, {path.string(), failure.message()});
    if (fill == nullptr) throw Refuse(Code::UnknownServer, {server});
    CreateFile(path);
    auto database = std::make_unique<Database>(path);
    RefuseForeign(*database, Examine(*database));
    Prepare(*database);
    Create(*database, fill);
    return database;
}

}  // namespace krvsim
