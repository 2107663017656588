#pragma once

#include <nlohmann/json.hpp>

#include "tools/farm_diff/plan.h"

namespace embedded::tools {

// The plan as an object: "equal", "counts" and "jukeboxes" with their "magazines" and "changes". A text that
// is not UTF-8 is an object {"hex": "..."}.
nlohmann::ordered_json PlanObject(const Plan& plan);

}  // namespace embedded::tools
