#include "krvcmd/frontend/parsing/parameter_list.h"

#include <algorithm>

namespace krvcmd {

const Parameter* FindParameter(const std::vector<Parameter>& parameters, std::string_view keyword) {
    const auto found =
        std::find_if(parameters.rbegin(), parameters.rend(),
                     [keyword](const Parameter& parameter) { return parameter.node->keyword == keyword; });
    return found == parameters.rend() ? nullptr : &*found;
}

}  // namespace krvcmd
