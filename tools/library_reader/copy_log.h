#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

#include "tools/common/long_task.h"
#include "tools/library_reader/library_service.h"

namespace embedded::tools {

// Reports what a copy cannot take over as it is, one line an item, and shows the progress.
class CopyLog {
  public:
    explicit CopyLog(std::ostream& err) : m_err(err), m_progress(err, "items read:", 0) {}

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

    // The last lines: how many items were not read, and how many changed.
    void WriteTotals();

  private:
    void Write(const char* kind, const std::string& item, const std::string& text);

    std::ostream& m_err;
    Progress m_progress;
    int64_t m_unread = 0;
    int64_t m_changed = 0;
};

// Walks a list of IDs: `next` replaces an ID by the next one, and by 0 at the end. A list that fails or does
// not ascend ends there, and the rest is reported. `items` names them in the plural.
void ForEachId(const std::string& items, CopyLog& log, const std::function<Outcome(uint32_t&)>& next,
               const std::function<void(int32_t)>& read);

}  // namespace embedded::tools
