#pragma once

#include <string_view>

namespace e2e {

// Texts that stand in many cases, by the name that cases give them in braces.
inline constexpr std::string_view kBanner =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";

// The banner on a terminal of 20 columns, where a line has at most 19 characters.
inline constexpr std::string_view kBannerOn20Columns =
    "Carvoline - command\n"
    "line interface\n"
    "Copyright (c)\n"
    "Ostrel 2003-2026\n"
    "\n";

inline constexpr std::string_view kSuccess = "Operation completed successfully.\n";
inline constexpr std::string_view kNoSuchItem = "Error: No such item present.\n";
inline constexpr std::string_view kInvalid =
    "Error: Invalid command line parameter. Specify help to get further information.\n";
inline constexpr std::string_view kUnresolved = "OS error 6: No such device or address\n";
inline constexpr std::string_view kInterrupted = "OS error 4: Interrupted system call\n";

}  // namespace e2e
