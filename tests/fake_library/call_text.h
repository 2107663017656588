#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvfake {

// The arguments of a call as text, each as " name=value".
std::string Argument(const char* name, int64_t value);
// In double quotes; a quote, a backslash and every byte outside the printable ASCII is written as
// \", \\ or \xHH. A null pointer is written as null.
std::string TextArgument(const char* name, const char* value);

std::string Describe(const JukeboxKey& key);
std::string Describe(const MagazineKey& key);
std::string Describe(const DriveKey& key);
std::string Describe(const SlotKey& key);
std::string Describe(const SideKey& key);
std::string Describe(const FormatOptions& options);

}  // namespace krvfake
