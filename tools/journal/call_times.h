#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/journal/journal.h"
#include "embedded/simulated/durations/simulated_time.h"
#include "embedded/store/database.h"
#include "tools/common/command_line.h"
#include "tools/common/streams.h"
#include "tools/farm_page/farm_page.h"

namespace embedded::tools {

// How long calls would take on real jukeboxes, as a user asks for it.
struct TimeOptions {
    std::string profile;   // "small", "large" or a file; empty: the default one of each jukebox
    std::string deadline;  // a time of day, or empty
    std::string start;     // a time of day; empty: now
};

// --profile, --deadline and, which needs the latter, --start. Returns the first two.
std::array<CLI::Option*, 2> AddTimeOptions(CLI::App& command, TimeOptions& options);

// The same options, which all need the option `show`.
void AddTimeOptions(CLI::App& command, CLI::Option& show, TimeOptions& options);

// The profile that the options name; nothing if they name none. Throws ToolFailure for a file that cannot be
// read or contains a mistake.
std::optional<DurationProfile> ReadProfile(const TimeOptions& options);

// What SetRealTime stores for a profile that an option names: its text, or the default profiles for an empty
// one. Throws like ReadProfile.
std::string RealTimeProfile(const std::string& profile);

// The jukeboxes of a farm.
std::vector<TimedJukebox> ReadTimedJukeboxes(Database& database);

// The times of the entries behind the one with the ID `last`; entries that cannot matter are left out.
SimulatedTime TimeOfJournal(Database& database, int64_t last, const std::optional<DurationProfile>& profile);

// A warning when the deadline cannot be kept.
std::optional<std::string> DeadlineWarning(const SimulatedTime& time, const TimeOptions& options);

// Writes a line for each jukebox that was at work and, on `err`, a warning when the deadline cannot be kept.
// Writes nothing when no call takes any time.
void WriteTimes(const SimulatedTime& time, const TimeOptions& options, const Streams& streams);

// The timeline of a page; `time` is that of the same entries. Of a long journal, calls that only looked are
// left out.
std::vector<PageCall> PageCallsOf(const std::vector<StoredJournalEntry>& entries, const SimulatedTime& time);

}  // namespace embedded::tools
