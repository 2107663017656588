#include "embedded/journal/journal.h"

#include "embedded/platform/platform.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kAddEntry = R"sql(
    INSERT INTO journal (time, duration, process, session, function, jukebox, magazine, slot, side, drive,
        volume, argument, succeeded, code, text, change)
    VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16)
    RETURNING id
)sql";
constexpr Sql kTrim = R"sql(DELETE FROM journal WHERE id <= ?1)sql";

constexpr Sql kEntries = R"sql(
    SELECT id, time, duration, process, session, function, jukebox, magazine, slot, side, drive, volume,
        argument, succeeded, code, text, change
    FROM journal WHERE id > ?1 ORDER BY id
)sql";

template <typename Duration>
int64_t Microseconds(const Duration& duration) {
    return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

}  // namespace

void WriteJournal(Database& database, int64_t limit, const JournalEntry& entry) {
    const Item& item = entry.call.item;
    const auto id = FindValue<int64_t>(
        database, kAddEntry, Microseconds(entry.time.time_since_epoch()), Microseconds(entry.duration),
        ProcessId(), entry.session, entry.call.function, item.jukebox, item.magazine, item.slot, item.side,
        item.drive, item.volume, item.text, entry.succeeded, entry.code, entry.text, entry.change);
    Run(database, kTrim, id.value_or(0) - limit);
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
        read(entry);
    }
}

}  // namespace embedded
