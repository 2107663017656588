#include "embedded/simulated/real_time.h"

#include <algorithm>

#include "embedded/simulated/durations/call_duration.h"
#include "embedded/simulated/durations/duration_profile.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

using std::chrono::microseconds;
using Clock = std::chrono::system_clock;

constexpr Sql kSetProfile = R"sql(UPDATE server SET real_time = ?1 WHERE id = 1)sql";
constexpr Sql kProfile = R"sql(SELECT real_time FROM server WHERE id = 1)sql";
constexpr Sql kSlots = R"sql(SELECT slot_count FROM jukebox WHERE id = ?1)sql";
constexpr Sql kFreeAt = R"sql(SELECT until FROM busy_jukebox WHERE jukebox = ?1)sql";
constexpr Sql kOccupy = R"sql(INSERT OR REPLACE INTO busy_jukebox (jukebox, until) VALUES (?1, ?2))sql";
// Of jukeboxes, whose IDs are above 0.
constexpr Sql kFreeAll = R"sql(DELETE FROM busy_jukebox WHERE jukebox > 0)sql";

std::optional<DurationProfile> ProfileOf(Database& database, int64_t jukebox) {
    const std::string text = ReadRealTime(database);
    if (text == kDefaultProfiles) {
        return DefaultProfile(FindValue<int64_t>(database, kSlots, jukebox).value_or(0));
    }
    ProfileResult result = ReadDurationProfile(text);
    if (!result.problems.empty()) return std::nullopt;
    return std::move(result.profile);
}

}  // namespace

void SetRealTime(Database& database, std::string_view profile) {
    Run(database, kSetProfile, profile);
    Run(database, kFreeAll);
}

std::string ReadRealTime(Database& database) {
    return FindValue<std::string>(database, kProfile).value_or(std::string());
}

std::optional<Clock::time_point> OccupyJukebox(Database& database, const CallInfo& call,
                                               const HandledMedium& medium) {
    if (!call.item.jukebox.has_value()) return std::nullopt;
    const int64_t jukebox = *call.item.jukebox;
    const std::optional<DurationProfile> profile = ProfileOf(database, jukebox);
    if (!profile.has_value()) return std::nullopt;
    const CallDuration duration = DurationOf(*profile, call.function, medium);
    const microseconds now = std::chrono::duration_cast<microseconds>(Clock::now().time_since_epoch());
    const microseconds start(
        std::max(now.count(), FindValue<int64_t>(database, kFreeAt, jukebox).value_or(0)));
    const microseconds end = start + std::chrono::round<microseconds>(duration.moving + duration.driving);
    Run(database, kOccupy, jukebox, int64_t{end.count()});
    return Clock::time_point(std::chrono::duration_cast<Clock::duration>(end));
}

}  // namespace embedded
