#pragma once

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace embedded {

// Tells cheaply whether any process has changed the database since a moment.
//
// A reader keeps its view of the database open from call to call, which saves the locking of each call, and
// renews it when something was committed. The shared header of the write-ahead log, which SQLite documents,
// changes with every commit before the commit is acknowledged, and comparing it only reads memory. Without
// such a header, everything counts as changed.
class ChangeWatch {
  public:
    explicit ChangeWatch(sqlite3* connection) : m_connection(connection) {}

    // Takes the present state as the one to compare with. Call it before a view is opened: a commit in
    // between then makes the view look older than it is, never newer.
    void Remember();

    bool HasChanged() const;

  private:
    // The first of the header's two copies, which a writer writes last.
    static constexpr size_t kHeaderWords = 12;

    sqlite3* m_connection;
    const volatile uint32_t* m_header = nullptr;
    std::array<uint32_t, kHeaderWords> m_remembered{};
};

}  // namespace embedded
