#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "embedded/model/farm.h"

namespace embedded::tools {

// What is different in another farm, as plain data.

enum class ChangeKind {
    Added,
    Removed,
    Loaded,    // into an import station
    Imported,  // from an import station into a slot
    Exported,  // from a slot into an export station
    Unloaded,  // out of a station, to the shelf
    Moved,     // anywhere else
    Formatted,
    Erased,
    Finalized,
    Scanned,  // the state of the slot became known
    Enabled,
    Disabled,
    Renamed,
    Altered  // anything else; the fields say what
};

// How a change is counted and shown: it adds something, takes something away, or alters it.
enum class ChangeEffect { Adds, Removes, Alters };

struct ChangeWord {
    ChangeKind kind;
    std::string_view word;  // "imported"
    ChangeEffect effect;
};
const ChangeWord& WordOfChange(ChangeKind kind);
// Nothing for an unknown word.
std::optional<ChangeKind> FindChange(std::string_view word);

// Where a medium is. All numbers are one-based. In a station, the slot is the position in the queue and the
// magazine 0; on the shelf, the jukebox is 0 as well.
struct FarmPlace {
    Place place = Place::Shelf;
    int32_t jukebox = 0;
    int32_t magazine = 0;
    int32_t slot = 0;

    friend bool operator==(const FarmPlace&, const FarmPlace&) = default;
    friend bool operator<(const FarmPlace& left, const FarmPlace& right) {
        return std::tie(left.place, left.jukebox, left.magazine, left.slot) <
               std::tie(right.place, right.jukebox, right.magazine, right.slot);
    }
};

// Texts of farms are bytes of no particular encoding.
struct FieldChange {
    std::string field;
    std::string before;
    std::string after;
};

struct Change {
    ChangeKind kind = ChangeKind::Altered;
    std::string item;               // "slot 3 side A", "volume 33", "drive 2", "magazine 2", "jukebox"
    std::string subject;            // what lies there: "Invoices 01", "blank DVD-RAM"; may be empty
    std::optional<FarmPlace> from;  // of media: where it was and is
    std::optional<FarmPlace> to;
    int32_t slot = 0;    // 0 = none
    int32_t side = 0;    // 1 = side A, 2 = side B, 0 = none
    int32_t volume = 0;  // 0 = none
    std::vector<FieldChange> fields;
};

struct MagazineChanges {
    int32_t magazine = 0;  // one-based; 0 = the jukebox itself, its drives and stations
    std::vector<Change> changes;
};

struct JukeboxChanges {
    int32_t jukebox = 0;  // ID; 0 = what is in no jukebox
    std::string name;     // as it is afterwards
    std::vector<MagazineChanges> magazines;
};

// By the ID of the jukebox and the number of the magazine; what is in no jukebox comes last.
struct Plan {
    std::vector<JukeboxChanges> jukeboxes;
    std::map<int32_t, std::string> jukeboxNames;  // of both farms, as they are afterwards

    bool IsEmpty() const { return jukeboxes.empty(); }
};

// How many changes of each kind there are, the kinds in their order; none with 0.
std::vector<std::pair<ChangeKind, int64_t>> CountChanges(const Plan& plan);

}  // namespace embedded::tools
