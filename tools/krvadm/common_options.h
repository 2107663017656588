#pragma once

#include <string>

#include "tools/common/command_line.h"
#include "tools/krvadm/tool.h"

namespace embedded::tools {

// "--json".
inline void AddOutputForm(CLI::App& command, OutputForm& form) {
    command.add_flag_callback(
        "--json", [&form] { form = OutputForm::Json; }, "as JSON instead of a table");
}

// "--load".
inline void AddLoading(CLI::App& command, bool& loadsDiscs) {
    command.add_flag(
        "--load", loadsDiscs,
        "where nothing else tells which drive is which, load a disc and look which one becomes ready");
}

// "--credentials".
inline void AddCredentials(CLI::App& command, std::string& file) {
    command.add_option("--credentials", file, "file with the user and the secret of the iSCSI target");
}

}  // namespace embedded::tools
