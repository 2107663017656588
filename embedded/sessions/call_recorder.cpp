#include "embedded/sessions/call_recorder.h"

#include <algorithm>

namespace embedded {
namespace {

constexpr size_t kShareThatMayBeLost = 16;
constexpr std::chrono::milliseconds kLongestWait{200};

}  // namespace

bool IsWriteFailure(const Refusal& refusal) {
    constexpr Code kCodes[] = {Code::DiskFull, Code::FarmReadOnly, Code::FarmLocked};
    return std::ranges::find(kCodes, static_cast<Code>(refusal.GetCode())) != std::end(kCodes);
}

CallRecorder::~CallRecorder() {
    try {
        Write();
    } catch (...) {
        // Nobody is left to tell.
        m_calls.clear();
    }
}

void CallRecorder::Keep(JournalEntry entry) {
    const int64_t limit = m_connection.GetState().journalLimit;
    if (limit == 0) return;
    m_limit = limit;
    m_calls.push_back(std::move(entry));
}

void CallRecorder::WriteWhenDue() {
    if (m_calls.empty()) return;
    const size_t group = std::clamp<size_t>(m_writtenCount / kShareThatMayBeLost, 1, kLargestGroup);
    const auto age = m_calls.back().time - m_calls.front().time;
    if (m_calls.size() >= group || age >= kLongestWait) Write();
}

void CallRecorder::Write() {
    if (m_calls.empty()) return;
    try {
        m_connection.Change([&](Database& database) { WriteIn(database); });
    } catch (const Refusal&) {
        MarkUnrecordedCalls(m_connection.GetDatabase());
    }
    Forget();
}

void CallRecorder::WriteIn(Database& database) {
    // The journal may have been switched off since the calls were made: they belong to it all the same.
    const int64_t limit = m_connection.GetState().journalLimit;
    WriteJournal(database, limit > 0 ? limit : m_limit, m_calls);
}

void CallRecorder::WriteIn(Database& database, const JournalEntry& change) {
    WriteIn(database);
    const int64_t limit = m_connection.GetState().journalLimit;
    if (limit > 0) WriteJournal(database, limit, {&change, 1});
}

void CallRecorder::Forget() {
    m_writtenCount += m_calls.size();
    m_calls.clear();
}

}  // namespace embedded
