#pragma once

#include <string>

#include "embedded/model/farm.h"
#include "tools/common/streams.h"

namespace embedded::tools {

// Reads a whole farm through a client library (a file) and changes nothing there. Whatever cannot be read is
// reported on `err`, item by item, and left out, and so is what no call shows: the media of volumes outside
// of visible slots, and the media in magazines that are not present. Blank media outside of slots stay
// unnoticed. The farm has no contradictions. Throws ToolFailure when the library or the session fails.
Farm CopyFarm(const std::string& library, const std::string& server, const Streams& streams);

}  // namespace embedded::tools
