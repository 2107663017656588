#pragma once

#include <functional>
#include <string>

#include "embedded/catalogue/change_made.h"
#include "embedded/journal/call_info.h"
#include "embedded/sessions/call_recorder.h"
#include "embedded/sessions/connection.h"

namespace embedded {

// Whether calls take the longer way: faults are applied first, and the journal records how the call ended.
// The state is the one of the connection's last view.
inline bool IsObserved(const ServiceState& state) {
    return state.journalLimit > 0 || state.faultCount > 0;
}

using Look = std::function<void(const View&)>;
// Returns what it has changed.
using Change = std::function<ChangeMade(Database&)>;
// What a change needs first and cannot be undone, such as the move of a medium; outside of any transaction.
using Preparation = std::function<void()>;

// Runs a look or a change as the session's call. What either throws is rethrown. The journal entry of a
// change that succeeds is part of the same transaction. A look never fails because the farm cannot be
// written: then no fault counts or affects it, and it is not recorded.
void ObserveLook(Connection& connection, CallRecorder& recorder, uint64_t session, const CallInfo& call,
                 const Look& look);
void ObserveChange(Connection& connection, CallRecorder& recorder, uint64_t session, const CallInfo& call,
                   const Change& change, const Preparation& prepare = {});

}  // namespace embedded
