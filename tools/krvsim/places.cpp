#include "tools/krvsim/places.h"

#include "embedded/platform/platform.h"

namespace embedded::tools {

std::string PlacesText(const std::string& nameOfPlace, const std::string& place) {
    const std::filesystem::path library = FindClientLibrary();
    return nameOfPlace + ": " + place +
           "; client library: " + (library.empty() ? "none is found" : PathText(library));
}

}  // namespace embedded::tools
