#pragma once

#include <vector>

#include "embedded/journal/journal.h"
#include "embedded/model/refusal.h"
#include "embedded/sessions/connection.h"

namespace embedded {

// Whether a call failed only because the farm could not be changed: it is read-only, the disk is full, or
// another process keeps it locked.
bool IsWriteFailure(const Refusal& refusal);

// The calls of a session that are not in the journal yet.
//
// A transaction for each look would cost many times the look itself. The first looks of a session are written
// at once, later ones in groups that grow with the number of calls written before: a process that is killed
// loses at most a sixteenth of its looks, and no more than kLargestGroup. A change is never kept back, and
// the looks before it are written with it.
class CallRecorder {
  public:
    static constexpr size_t kLargestGroup = 1000;

    explicit CallRecorder(Connection& connection) : m_connection(connection) {}
    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;
    // Writes what is left.
    ~CallRecorder();

    // Does nothing while the journal is off.
    void Keep(JournalEntry entry);

    // Writes the calls when enough of them have come together, or one has waited for long.
    void WriteWhenDue();

    // Writes the calls. A farm that cannot be written is no failure: the calls are dropped, which
    // FindUnrecordedCalls tells.
    void Write();

    // Writes the calls and, behind them, the change whose transaction it is; Forget them once it is kept.
    void WriteIn(Database& database, const JournalEntry& change);
    void Forget();

  private:
    void WriteIn(Database& database);

    Connection& m_connection;
    std::vector<JournalEntry> m_calls;
    size_t m_writtenCount = 0;
    int64_t m_limit = 0;  // of the journal, when the last call was made
};

}  // namespace embedded
