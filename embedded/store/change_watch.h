// Tells cheaply whether any process has changed the database since a moment.
//
// A reader keeps its view of the database open from call to call, which saves the locking of each
// call, and renews it when something was committed. The database's documented shared header of
// the write-ahead log changes with every commit, before the commit is acknowledged; comparing it
// is a look into memory. Where there is no such header, everything counts as changed.
#pragma once

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace embedded {

class ChangeWatch {
  public:
    explicit ChangeWatch(sqlite3* connection) : m_connection(connection) {}

    // Takes the present state as the one to compare with. Called before a view is opened: a commit
    // in between makes the view look older than it is, never newer.
    void Remember();

    bool HasChanged() const;

  private:
    // The first of the header's two copies, which a writer writes last.
    static constexpr size_t kHeaderWords = 12;
    using Header = std::array<uint32_t, kHeaderWords>;

    Header Read() const;

    sqlite3* m_connection;
    const volatile uint32_t* m_header = nullptr;
    Header m_remembered{};
};

}  // namespace embedded
