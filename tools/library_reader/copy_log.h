#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <string>

#include "tools/common/long_task.h"
#include "tools/library_reader/library_service.h"

namespace embedded::tools {

// How much of what a copy cannot take over as it is gets a line of its own: the first few items of each kind,
// or every one.
enum class Listing { Grouped, Complete };

// Reports what a copy cannot take over as it is, and shows the progress.
class CopyLog {
  public:
    CopyLog(std::ostream& err, Listing listing)
        : m_err(err), m_listing(listing), m_progress(err, "items read:", 0) {}

    // The item is left out.
    void AddUnread(const std::string& item, const std::string& reason);
    // The item is copied with another value, which `change` tells.
    void AddChanged(const std::string& item, const std::string& change);
    // The service has the item, but no call shows it.
    void AddHidden(const std::string& item, const std::string& reason);

    // Whether the call succeeded; if not, the item is reported as unread.
    bool IsRead(const Outcome& outcome, const std::string& item);

    // The count, or 0 for one that no service can have: it is reported.
    int32_t PossibleCount(int32_t count, int32_t limit, const std::string& items);

    void Step() { m_progress.Step(); }

    // How many items were not read.
    int64_t GetUnread() const { return m_unread; }

    // The last lines: how many items of each kind have no line, how many were not read, and how many changed.
    void WriteTotals();

  private:
    struct Group {
        std::string first;  // the line of its first item
        int64_t count = 0;
    };

    void Write(const char* kind, const std::string& item, const std::string& text);

    std::ostream& m_err;
    Listing m_listing;
    Progress m_progress;
    std::map<std::string, Group> m_groups;
    int64_t m_unread = 0;
    int64_t m_changed = 0;
};

// Walks a list of IDs: `next` replaces an ID by the next one. The list ends at 0; one that fails, or that
// yields an ID again, ends there, too, and that is reported. `items` names them in the plural.
void ForEachId(const std::string& items, CopyLog& log, const std::function<Outcome(uint32_t&)>& next,
               const std::function<void(int32_t)>& read);

}  // namespace embedded::tools
