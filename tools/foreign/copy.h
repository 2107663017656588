// Reads a whole farm through a client library.
#pragma once

#include <string>

#include "embedded/model/farm.h"
#include "tools/common/command.h"

namespace embedded::tools {

// The farm as the library shows it. What cannot be read is reported to `err`, item by item, and left
// out; so is what the service has but no call can show: the media of volumes that lie in no slot, and what is
// in magazines that are not present. No call tells of blank media outside of slots. The farm never
// contradicts itself.
Farm CopyFarm(const std::string& library, const std::string& server, const Streams& streams);

}  // namespace embedded::tools
