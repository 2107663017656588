#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "tools/krvadm/tool.h"

namespace embedded::tools {

// What one run of krvadm has written and returned.
struct ToolRun {
    int status = 0;
    std::string out;
    std::string err;
};

inline ToolRun RunKrvadm(const std::vector<std::string>& words) {
    std::ostringstream out;
    std::ostringstream err;
    const int status = RunAdministration(words, {out, err});
    return {status, out.str(), err.str()};
}

}  // namespace embedded::tools
