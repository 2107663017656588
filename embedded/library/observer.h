// The longer way of a call on a farm that has faults or a journal: the faults are suffered first,
// and the journal is told how the call ended.
#pragma once

#include <functional>
#include <string>

#include "embedded/calls/call_info.h"
#include "embedded/library/connection.h"

namespace embedded {

// The state is the one of the connection's last view.
inline bool IsObserved(const ServerState& state) {
    return state.journalLimit > 0 || state.faultCount > 0;
}

using Look = std::function<void(const View&)>;
// Returns what it has changed, in words.
using Change = std::function<std::string(Database&)>;

// Runs a look or a change as the session's call. What either throws is thrown on. The journal entry of
// a change that succeeds is part of the same transaction.
void ObserveLook(Connection& connection, uint64_t session, const CallInfo& call, const Look& look);
void ObserveChange(Connection& connection, uint64_t session, const CallInfo& call, const Change& change);

}  // namespace embedded
