#pragma once

#include <string>

namespace embedded::tools {

// Where krvcmd and krvsim look, in one line without its end: the client library that krvcmd loads, and the
// place of the farms, which has this name.
std::string PlacesText(const std::string& nameOfPlace, const std::string& place);

}  // namespace embedded::tools
