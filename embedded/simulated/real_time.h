#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "embedded/journal/call_info.h"
#include "embedded/model/handled_medium.h"
#include "embedded/store/database.h"

namespace embedded {

// Real time: every call that handles a medium answers only when a real jukebox would have done it.

// By which durations calls take real time: the text of a profile, or kDefaultProfiles for those that go by
// the number of slots. Empty: calls answer at once.
inline constexpr std::string_view kDefaultProfiles = "default";
void SetRealTime(Database& database, std::string_view profile);
std::string ReadRealTime(Database& database);

// When the call may answer: a jukebox handles the calls of all processes one after the other. Takes the
// jukebox up to then, in the caller's transaction. Nothing for a profile that is damaged, or for a call
// without a jukebox.
std::optional<std::chrono::system_clock::time_point> OccupyJukebox(Database& database, const CallInfo& call,
                                                                   const HandledMedium& medium);

}  // namespace embedded
