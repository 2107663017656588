#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "embedded/store/database.h"

namespace embedded {

inline constexpr size_t kMaxServerName = 64;

// A name for a server's database file that is safe on every platform: small letters, digits, "-" and "_"
// stand for themselves, every other byte becomes "%" and two hexadecimal digits. Two servers never share a
// file, not even where the case of letters does not count.
std::string FarmFileName(std::string_view server);

// The server that a file name stands for; empty when it stands for none.
std::string ServerOfFileName(std::string_view fileName);

// The path of a server's file; refuses names that are empty or longer than kMaxServerName.
std::filesystem::path FarmPath(std::string_view server);

// Puts the first farm into a database whose tables are there and empty.
using FillFarm = std::function<void(Database&)>;

// Writes the server's farm to a file beside its place and then moves it there, so that a failure or an
// interruption leaves no farm. False when a file is in its place already: that one stays.
bool CreateFarm(std::string_view server, const FillFarm& fill);

// Opens the server's farm. When there is none and `fill` is given, creates it; of two processes that do so at
// once, one creates it and the other finds it. Without `fill`, a server that has no farm is refused as
// unknown. A farm of an earlier release is migrated.
std::unique_ptr<Database> OpenFarm(std::string_view server, const FillFarm& fill);

// Opens an existing farm at a path, as OpenFarm does, or returns null when the file is empty.
std::unique_ptr<Database> OpenFarmAt(const std::filesystem::path& path);

}  // namespace embedded
