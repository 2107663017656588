#include "embedded/simulated/durations/simulated_time.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <unordered_map>

#include "embedded/simulated/durations/call_duration.h"
#include "embedded/simulated/durations/duration_text.h"

namespace embedded {
namespace {

using std::chrono::microseconds;
using Clock = std::chrono::system_clock;

// Calls below it are those of the simulated service itself, which take next to no time.
constexpr microseconds kLongCall = std::chrono::seconds(1);

microseconds Rounded(Seconds duration) {
    return std::chrono::round<microseconds>(duration);
}

// A session, in real time and in simulated time.
struct SessionTime {
    Clock::time_point opened;
    Clock::time_point closed;
    std::optional<microseconds> now;  // nothing until its first call
};

Clock::time_point EndOf(const StoredJournalEntry& entry) {
    return entry.time + microseconds(entry.duration);
}

class Simulation {
  public:
    Simulation(std::span<const TimedJukebox> jukeboxes, const std::optional<DurationProfile>& profile)
        : m_profile(profile) {
        for (const TimedJukebox& jukebox : jukeboxes)
            m_jukeboxes.emplace(jukebox.id, &jukebox);
    }

    void Know(const StoredJournalEntry& entry) {
        const auto [session, isNew] =
            m_sessions.try_emplace(entry.session, SessionTime{entry.time, EndOf(entry), {}});
        if (isNew) return;
        session->second.opened = std::min(session->second.opened, entry.time);
        session->second.closed = std::max(session->second.closed, EndOf(entry));
    }

    // In the order of the entries' real times, once all are known.
    CallTime Add(const StoredJournalEntry& entry) {
        SessionTime& session = m_sessions.at(entry.session);
        if (!session.now.has_value()) session.now = FindStart(session);
        CallTime call = TimeOf(entry);
        call.start = *session.now;
        if (call.duration.count() > 0 && entry.item.jukebox.has_value()) {
            microseconds& isFree = m_isFree[*entry.item.jukebox];
            call.start = std::max(call.start, isFree);
            isFree = call.start + call.duration;
            Count(*entry.item.jukebox, call);
        }
        session.now = call.start + call.duration;
        m_end = std::max(m_end, *session.now);
        return call;
    }

    SimulatedTime Result() const {
        SimulatedTime time;
        for (const auto& [id, jukebox] : m_times)
            time.jukeboxes.push_back(jukebox);
        time.end = m_end;
        return time;
    }

  private:
    // A session begins when all that were closed before it are over. Sessions start in the order of time.
    microseconds FindStart(const SessionTime& session) {
        while (!m_open.empty() && m_open.begin()->first <= session.opened) {
            m_lastEnd = std::max(m_lastEnd, *m_open.begin()->second->now);
            m_open.erase(m_open.begin());
        }
        m_open.emplace(session.closed, &session);
        return m_lastEnd;
    }

    CallTime TimeOf(const StoredJournalEntry& entry) const {
        CallTime time;
        if (entry.medium.has_value()) {
            const CallDuration duration =
                DurationOf(ProfileOf(entry.item.jukebox.value_or(0)), entry.function, *entry.medium);
            time.moving = Rounded(duration.moving);
            time.duration = Rounded(duration.moving + duration.driving);
        }
        const microseconds real(entry.duration);
        if (real >= kLongCall) time.duration = std::max(time.duration, real);
        return time;
    }

    const DurationProfile& ProfileOf(int64_t jukebox) const {
        if (m_profile.has_value()) return *m_profile;
        const auto found = m_jukeboxes.find(jukebox);
        return DefaultProfile(found == m_jukeboxes.end() ? 0 : found->second->slots);
    }

    void Count(int64_t id, const CallTime& call) {
        JukeboxTime& jukebox = m_times[id];
        const auto found = m_jukeboxes.find(id);
        jukebox.id = id;
        jukebox.name = found == m_jukeboxes.end() ? std::to_string(id) : found->second->name;
        jukebox.duration += call.duration;
        jukebox.moving += call.moving;
    }

    const std::optional<DurationProfile>& m_profile;
    std::map<int64_t, const TimedJukebox*> m_jukeboxes;
    std::unordered_map<uint64_t, SessionTime> m_sessions;
    std::multimap<Clock::time_point, const SessionTime*> m_open;  // that have begun, by when they are closed
    microseconds m_lastEnd{0};                                    // of the sessions that are no longer there
    std::map<int64_t, microseconds> m_isFree;                     // when each jukebox is
    std::map<int64_t, JukeboxTime> m_times;
    microseconds m_end{0};
};

}  // namespace

SimulatedTime SimulateTime(std::span<const StoredJournalEntry> entries,
                           std::span<const TimedJukebox> jukeboxes,
                           const std::optional<DurationProfile>& profile) {
    Simulation simulation(jukeboxes, profile);
    for (const StoredJournalEntry& entry : entries)
        simulation.Know(entry);
    // Calls that only look are written in groups, so that the entries of parallel sessions are not in order.
    std::vector<size_t> order(entries.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::stable_sort(order, {}, [&](size_t index) { return entries[index].time; });
    std::vector<CallTime> calls(entries.size());
    for (const size_t index : order)
        calls[index] = simulation.Add(entries[index]);
    SimulatedTime time = simulation.Result();
    time.calls = std::move(calls);
    return time;
}

bool IsTimed(const StoredJournalEntry& entry) {
    return entry.medium.has_value() || microseconds(entry.duration) >= kLongCall ||
           entry.function == "KrvSessionCreate" || entry.function == "KrvSessionClose";
}

std::vector<std::string> TimeLines(const SimulatedTime& time) {
    std::vector<std::string> lines;
    for (const JukeboxTime& jukebox : time.jukeboxes) {
        lines.push_back("about " + DurationText(jukebox.duration) + " in jukebox " + jukebox.name +
                        ", of which " + DurationText(jukebox.moving) + " moving");
    }
    if (lines.size() > 1) lines.push_back("about " + DurationText(time.end) + " in all");
    return lines;
}

}  // namespace embedded
