#pragma once

#include <string>

#include "embedded/model/refusal.h"
#include "embedded/remote/process/ssh_process.h"
#include "embedded/remote/servers/server_list.h"

namespace embedded::remote {

// What ssh said, in one line that any terminal can show; never empty.
std::string ReasonOf(const SshEnd& end);

// Why the server's side has not said a word, judged by how ssh ended.
Refusal SshFailure(const KnownServer& server, const SshEnd& end);

}  // namespace embedded::remote
