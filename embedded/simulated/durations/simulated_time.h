#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "embedded/journal/journal.h"
#include "embedded/simulated/durations/duration_profile.h"

namespace embedded {

// What the times need to know about a jukebox.
struct TimedJukebox {
    int64_t id = 0;
    std::string name;
    int64_t slots = 0;
};

// When a call happens on real jukeboxes.
struct CallTime {
    std::chrono::microseconds start{0};  // since the first call
    std::chrono::microseconds duration{0};
    std::chrono::microseconds moving{0};  // of the robot, within the duration
};

// How long a jukebox is at work.
struct JukeboxTime {
    int64_t id = 0;
    std::string name;
    std::chrono::microseconds duration{0};
    std::chrono::microseconds moving{0};
};

struct SimulatedTime {
    std::vector<CallTime> calls;         // one for each entry, in the same order
    std::vector<JukeboxTime> jukeboxes;  // only those that are at work, by their IDs
    std::chrono::microseconds end{0};    // of the last call
};

// The times of the calls of a journal, by this profile or, without one, by the default profile for the number
// of slots of each jukebox. Nothing waits.
//
// A jukebox handles one call at a time. The calls of a session come one after the other, and so do sessions
// that did not overlap when the journal was written; sessions that did, those of parallel scripts, work side
// by side. A call that really took longer than its simulated duration, such as one that a fault delays,
// counts with the time that it took.
SimulatedTime SimulateTime(std::span<const StoredJournalEntry> entries,
                           std::span<const TimedJukebox> jukeboxes,
                           const std::optional<DurationProfile>& profile);

// Whether an entry can matter to the times: calls that handle a medium or took long, and the first and the
// last one of a session.
bool IsTimed(const StoredJournalEntry& entry);

// "about 3 h 40 min in jukebox MyBox, of which 2 h 10 min moving", one line for each jukebox at work, and for
// several jukeboxes "about 4 h in all". Names are bytes as the farm has them.
std::vector<std::string> TimeLines(const SimulatedTime& time);

}  // namespace embedded
