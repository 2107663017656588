#pragma once

#include <string_view>

#include "embedded/remote/protocol/messages.h"
#include "embedded/remote/serve/volume_rows.h"
#include "embedded/sessions/local_session.h"

namespace embedded::remote {

// Whether the function of the client library changes something. Every name that is no function of a session
// is taken for a change.
bool IsChange(std::string_view function);

// Makes the call that the request describes, and reads ahead when the request allows it. What the session
// refuses is in the answer. Throws a ProtocolFailure for a request that is not valid.
Answer MakeCall(LocalSession& session, VolumeRows& rows, const Request& request);

// To be called when an answer is on its way: makes what a walk over volumes is likely to ask next.
void PrepareNextRow(LocalSession& session, VolumeRows& rows);

}  // namespace embedded::remote
