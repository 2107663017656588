#include "embedded/journal/journal.h"

#include "embedded/platform/platform.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kAddEntry = R"sql(
    INSERT INTO journal (time, duration, process, session, function, jukebox, magazine, slot, side, drive,
        volume, argument, succeeded, code, text, change, medium_type, medium_slot, medium_sides, certified)
    VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17, ?18, ?19, ?20)
)sql";
constexpr Sql kTrim = R"sql(DELETE FROM journal WHERE id <= ?1)sql";

constexpr Sql kEntries = R"sql(
    SELECT id, time, duration, process, session, function, jukebox, magazine, slot, side, drive, volume,
        argument, succeeded, code, text, change, medium_type, medium_slot, medium_sides, certified
    FROM journal WHERE id > ?1 ORDER BY id
)sql";

std::filesystem::path MarkOf(const Database& database) {
    std::filesystem::path mark = database.GetFile();
    mark += "-unrecorded";
    return mark;
}

// The field of a medium, null without one.
template <typename Field>
std::optional<Field> Of(const std::optional<HandledMedium>& medium, Field HandledMedium::*field) {
    return medium.has_value() ? std::optional<Field>((*medium).*field) : std::nullopt;
}

// From the next four columns of a row.
std::optional<HandledMedium> ReadMedium(Statement& row) {
    const auto type = row.Read<std::optional<uint32_t>>();
    const auto slot = row.Read<std::optional<int32_t>>();
    const auto sides = row.Read<std::optional<HandledSides>>();
    const auto certified = row.Read<std::optional<bool>>();
    if (!type.has_value()) return std::nullopt;
    return HandledMedium{*type, slot.value_or(0), sides.value_or(HandledSides::None),
                         certified.value_or(false)};
}

template <typename Duration>
int64_t Microseconds(const Duration& duration) {
    return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

}  // namespace

void WriteJournal(Database& database, int64_t limit, std::span<const JournalEntry> entries) {
    if (entries.empty()) return;
    for (const JournalEntry& entry : entries) {
        const Item& item = entry.call.item;
        Run(database, kAddEntry, Microseconds(entry.time.time_since_epoch()), Microseconds(entry.duration),
            ProcessId(), entry.session, entry.call.function, item.jukebox, item.magazine, item.slot,
            item.side, item.drive, item.volume, entry.argument, entry.succeeded, entry.code, entry.text,
            entry.change, Of(entry.medium, &HandledMedium::type), Of(entry.medium, &HandledMedium::slot),
            Of(entry.medium, &HandledMedium::sides), Of(entry.medium, &HandledMedium::certified));
    }
    Run(database, kTrim, int64_t{sqlite3_last_insert_rowid(database.GetConnection())} - limit);
}

void MarkUnrecordedCalls(const Database& database) {
    const std::filesystem::path mark = MarkOf(database);
    if (CreatePrivateFile(mark)) return;
    std::error_code ignored;
    std::filesystem::last_write_time(mark, std::filesystem::file_time_type::clock::now(), ignored);
}

std::optional<std::filesystem::file_time_type> FindUnrecordedCalls(const Database& database) {
    std::error_code failure;
    const auto time = std::filesystem::last_write_time(MarkOf(database), failure);
    if (failure) return std::nullopt;
    return time;
}

void ForgetUnrecordedCalls(const Database& database) {
    std::error_code ignored;
    std::filesystem::remove(MarkOf(database), ignored);
}

void ReadJournal(Database& database, int64_t last,
                 const std::function<void(const StoredJournalEntry&)>& read) {
    Statement row(database, kEntries, last);
    while (row.Next()) {
        StoredJournalEntry entry;
        row >> entry.id;
        entry.time = std::chrono::system_clock::time_point(
            std::chrono::duration_cast<std::chrono::system_clock::duration>(
                std::chrono::microseconds(row.Read<int64_t>())));
        row >> entry.duration >> entry.process >> entry.session >> entry.function;
        entry.item = ReadItem(row);
        row >> entry.argument >> entry.succeeded >> entry.code >> entry.text >> entry.change;
        entry.medium = ReadMedium(row);
        read(entry);
    }
}

}  // namespace embedded
