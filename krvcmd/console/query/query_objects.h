#pragma once

#include <span>
#include <string_view>

namespace krvcmd {

enum class QueryObject { Jukeboxes, Magazines, Slots, Drives, Volumes };

// What a query of one object shows when the user does not say otherwise, in column letters.
struct QueryObjectInfo {
    QueryObject object;
    std::string_view keyword;
    std::string_view defaultColumns;
    std::string_view defaultSort;
};

// In the order in which the first one given on the command line is chosen.
std::span<const QueryObjectInfo> QueryObjects();

}  // namespace krvcmd
