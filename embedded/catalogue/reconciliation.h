#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/jukebox/physical_jukebox.h"

namespace embedded {

// An element of a real jukebox, and the medium that the catalogue has there: the one whose home it is.
struct KnownElement {
    ElementKind kind = ElementKind::Slot;
    uint16_t address = 0;
    bool isReported = true;
    int64_t medium = 0;  // 0 = none
    std::string tag;     // of the medium
};

// A move that was begun. Its end is not recorded yet.
struct Intent {
    int64_t medium = 0;
    uint16_t source = 0;
    uint16_t destination = 0;
    int64_t begun = 0;  // microseconds since 1970; of an intent that is stored
};

struct KnownJukebox {
    std::vector<KnownElement> elements;
    std::optional<Intent> intent;
};

// Whether the move of the intent may still be going on.
enum class Robot { AtRest, Moving };

// A medium goes into a slot or mail slot of the catalogue.
struct Placement {
    int64_t medium = 0;  // 0 = one that is in no element of this jukebox's catalogue
    uint16_t element = 0;
    std::string tag;
    bool isExport = false;  // the service itself put it into the mail slot

    bool operator==(const Placement&) const = default;
};

struct Tagging {
    int64_t medium = 0;
    std::string tag;

    bool operator==(const Tagging&) const = default;
};

// A medium in a drive or a picker.
struct LoadedMedium {
    uint16_t element = 0;
    uint16_t home = 0;  // 0 = no slot is free for it
    bool isInverted = false;

    bool operator==(const LoadedMedium&) const = default;
};

// What has to change in the catalogue so that it says what the jukebox says.
struct Reconciliation {
    std::vector<uint16_t> appeared;     // elements that the changer tells of again
    std::vector<uint16_t> disappeared;  // and those that it no longer tells of
    std::vector<int64_t> removed;       // media that are in no element any more
    std::vector<Placement> placed;
    std::vector<Tagging> tagged;  // media whose barcode is read for the first time

    std::vector<LoadedMedium> loaded;  // no change by itself

    bool IsEmpty() const {
        return appeared.empty() && disappeared.empty() && removed.empty() && placed.empty() && tagged.empty();
    }
};

// Media are recognised by the intent first, then by their barcodes, then by the element that they came from.
// A medium without a barcode that was moved by hand to another slot counts as a new one. A medium in a drive
// keeps its slot; one that has none gets the slot that it came from, or an empty one.
Reconciliation Reconcile(const KnownJukebox& known, const std::vector<ElementState>& elements, Robot robot);

}  // namespace embedded
