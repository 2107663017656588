#include "tools/library_reader/copy_log.h"

#include <algorithm>
#include <unordered_set>

#include "tools/common/plain_text.h"

namespace embedded::tools {
namespace {

// The lines of a group that are written.
constexpr int64_t kMaxLines = 5;

// The line without its numbers and quoted texts: lines that differ only in those are of one group.
std::string PatternOf(const std::string& line) {
    constexpr const char* kDigits = "0123456789";
    std::string pattern;
    for (size_t position = 0; position < line.size();) {
        if (line[position] == '"') {
            pattern += '"';
            const size_t end = line.find('"', position + 1);
            position = end == std::string::npos ? line.size() : end + 1;
        } else if (line.find_first_of(kDigits, position) == position) {
            pattern += '#';
            position = std::min(line.find_first_not_of(kDigits, position), line.size());
        } else {
            pattern += line[position++];
        }
    }
    return pattern;
}

}  // namespace

void CopyLog::Write(const char* kind, const std::string& item, const std::string& text) {
    std::string line = std::string(kind) + ": " + item + ": " + text;
    Group& group = m_groups[PatternOf(line)];
    ++group.count;
    if (m_listing == Listing::Complete || group.count <= kMaxLines) {
        m_progress.Clear();
        m_err << line << '\n';
    }
    if (group.count == 1) group.first = std::move(line);
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
    for (const auto& [pattern, group] : m_groups) {
        if (m_listing == Listing::Complete || group.count <= kMaxLines) continue;
        m_err << Counted(group.count - kMaxLines, "more item", "more items")
              << " (--verbose lists all) like: " << group.first << '\n';
    }
    if (m_unread > 0) m_err << Counted(m_unread, "item", "items") << " could not be read.\n";
    if (m_changed > 0) m_err << Counted(m_changed, "item was", "items were") << " changed.\n";
}

void ForEachId(const std::string& items, CopyLog& log, const std::function<Outcome(uint32_t&)>& next,
               const std::function<void(int32_t)>& read) {
    std::unordered_set<uint32_t> seen;
    uint32_t id = 0;
    for (uint32_t last = 0;; last = id) {
        const std::string rest = "the " + items + " after ID " + std::to_string(last);
        if (!log.IsRead(next(id), rest) || id == 0) return;
        if (!seen.insert(id).second)
            return log.AddUnread(rest, "the next ID, " + std::to_string(id) + ", was listed before");
        if (id > INT32_MAX) {
            log.AddUnread("ID " + std::to_string(id) + " of the " + items, "the ID is too high");
        } else {
            read(static_cast<int32_t>(id));
        }
    }
}

}  // namespace embedded::tools
