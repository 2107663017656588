#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "embedded/model/farm.h"
#include "tools/farm_diff/plan.h"

namespace embedded::tools {

// A call of the timeline. Texts are bytes of no particular encoding.
struct PageCall {
    std::chrono::microseconds start{0};     // since the first call
    std::chrono::microseconds duration{0};  // with the moves
    std::chrono::microseconds moving{0};    // of the robot alone
    std::string function;
    std::string item;  // in words, with one-based numbers
    std::string argument;
    bool succeeded = true;
    int64_t code = 0;
    std::string text;    // of the failure
    std::string change;  // in words
};

// What a page shows: a farm alone or, with `after`, a rehearsal.
struct FarmPage {
    std::string server;
    const Farm* farm = nullptr;   // never null; the caller's, as `after` is
    const Farm* after = nullptr;  // null: the farm is drawn alone
    // Sentences for the head of the page, such as how long the rehearsal takes.
    std::vector<std::string> remarks;
    // Each of these is left out of the page when it is not given.
    const Plan* plan = nullptr;  // what is different in `after`; the caller's
    std::optional<std::vector<PageCall>> calls;
    std::optional<std::string> output;  // of the script
};

// Writes the page as one HTML file that needs nothing else. Its data are in it as JSON, in which no character
// can begin or end an element, and its script shows them as text only.
void WriteFarmPage(std::ostream& out, const FarmPage& page);

}  // namespace embedded::tools
