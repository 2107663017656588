#include "tools/library_reader/copy_log.h"

#include "tools/common/plain_text.h"

namespace embedded::tools {

void CopyLog::Write(const char* kind, const std::string& item, const std::string& text) {
    m_progress.Clear();
    m_err << kind << ": " << item << ": " << text << '\n';
}

void CopyLog::AddUnread(const std::string& item, const std::string& reason) {
    Write("not read", item, reason);
    ++m_unread;
}

void CopyLog::AddChanged(const std::string& item, const std::string& change) {
    Write("changed", item, change);
    ++m_changed;
}

void CopyLog::AddHidden(const std::string& item, const std::string& reason) {
    Write("not visible", item, reason);
}

bool CopyLog::IsRead(const Outcome& outcome, const std::string& item) {
    if (!outcome.has_value()) return true;
    AddUnread(item, FailureText(*outcome));
    return false;
}

int32_t CopyLog::PossibleCount(int32_t count, int32_t limit, const std::string& items) {
    if (count >= 0 && count <= limit) return count;
    AddUnread(items, "impossible count " + std::to_string(count));
    return 0;
}

void CopyLog::WriteTotals() {
    m_progress.Clear();
    if (m_unread > 0) m_err << Counted(m_unread, "item", "items") << " could not be read.\n";
    if (m_changed > 0) m_err << Counted(m_changed, "item was", "items were") << " changed.\n";
}

void ForEachId(const std::string& items, CopyLog& log, const std::function<Outcome(uint32_t&)>& next,
               const std::function<void(int32_t)>& read) {
    uint32_t id = 0;
    for (uint32_t last = 0;; last = id) {
        const std::string rest = "the " + items + " after ID " + std::to_string(last);
        if (!log.IsRead(next(id), rest) || id == 0) return;
        if (id <= last || id > INT32_MAX) return log.AddUnread(rest, "the next ID is " + std::to_string(id));
        read(static_cast<int32_t>(id));
    }
}

}  // namespace embedded::tools
