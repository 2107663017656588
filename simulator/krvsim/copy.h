// Reads a whole farm through a client library.
#pragma once

#include <string>

#include "simulator/krvsim/commands.h"
#include "simulator/layout/farm.h"

namespace krvsim {

// The farm as the library shows it. What cannot be read is reported to `err`, item by item, and left
// out; what the interface does not show (media outside of slots, what is in missing magazines) is not in
// it. The farm never contradicts itself.
Farm CopyFarm(const std::string& library, const std::string& server, const Streams& streams);

}  // namespace krvsim
