#include "embedded/calls/journal.h"

#include "embedded/platform/platform.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

template <typename Duration>
int64_t Microseconds(const Duration& duration) {
    return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

}  // namespace

void WriteJournal(Database& database, int64_t limit, const JournalEntry& entry) {
    const Item& item = entry.call.item;
    int64_t id = 0;
    {
        Rows rows(database, Sql::AddJournalEntry, Microseconds(entry.time.time_since_epoch()),
                  Microseconds(entry.duration), ProcessId(), static_cast<int64_t>(entry.session),
                  entry.call.function, item.jukebox, item.magazine, item.slot, item.side, item.drive,
                  item.volume, item.text, entry.succeeded, entry.code, entry.text, entry.change);
        rows.Next();
        id = rows.Integer(0);
    }
    Run(database, Sql::TrimJournal, id - limit);
}

}  // namespace embedded
