// The database file of a server's farm: its name, its opening, its creation.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "embedded/store/database.h"

namespace embedded {

inline constexpr size_t kMaxServerName = 64;

// A name for the file that is safe on every platform: small letters, digits, "-" and "_" stand for
// themselves, every other byte is written as "%" and two hexadecimal digits, so that two servers
// never share a file, not even where the case of letters does not count.
std::string FarmFileName(std::string_view server);

// The server that a file name stands for; empty when it stands for none.
std::string ServerOfFileName(std::string_view fileName);

// The path of a server's file; refuses names that are empty or longer than kMaxServerName.
std::filesystem::path FarmPath(std::string_view server);

// Puts the first farm into a database whose tables are there and empty.
using FillFarm = std::function<void(Database&)>;

// Makes the server's farm beside its place and puts it there whole, so that what fails or is stopped halfway
// leaves no farm. False when a file was in its place before: that one stays.
bool CreateFarm(std::string_view server, const FillFarm& fill);

// Opens the server's farm. When there is none and `fill` is given, creates it;
// of two processes that do so at once, one creates and the other finds it. Without `fill`, a
// server that has no farm is refused as unknown. A farm of an earlier release is brought forward.
std::unique_ptr<Database> OpenFarm(std::string_view server, const FillFarm& fill);

// Opens an existing farm at a path, as OpenFarm does, or returns null when the file is empty.
std::unique_ptr<Database> OpenFarmAt(const std::filesystem::path& path);

}  // namespace embedded
