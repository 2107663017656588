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

// The folder of the farms. Refuses when the environment names none, or a relative one, which would mean
// another folder in every working directory.
std::filesystem::path FarmFolder();

// The same; refuses a folder of $KRVSIM_HOME that does not exist. Only the default folder is made when the
// first farm is needed; another one may be misspelt.
std::filesystem::path ExistingFarmFolder();

// Creates the folder of the farms and the missing ones above it.
void MakeFarmFolder();

// The folder for the farms of real jukeboxes that the administrators of this machine share. Empty when there
// is none, and when $KRVSIM_HOME names the folder of all farms.
std::filesystem::path SharedFarmFolder();

// The path of a server's file: the one in the shared folder, if there is one, else that in the folder of the
// farms, whether or not it is there. Refuses names that are empty or longer than kMaxServerName.
std::filesystem::path FarmPath(std::string_view server);

// Puts the first farm into a database whose tables are there and empty.
using FillFarm = std::function<void(Database&)>;

// Writes the server's farm to a file beside its place and then moves it there, so that a failure or an
// interruption leaves no farm. False when anything is in its place already, be it a link that leads nowhere:
// it stays. Makes the folder when it is missing.
bool CreateFarm(std::string_view server, const FillFarm& fill);
// The same in the shared folder, if there is one; false when the server has a farm in either.
bool CreateSharedFarm(std::string_view server, const FillFarm& fill);
// The same at a path, whose folder is there.
bool CreateFarmAt(const std::filesystem::path& path, const FillFarm& fill);

// Opens the server's farm. When there is none and `fill` is given, creates it; of two processes that do so at
// once, one creates it and the other finds it. Without `fill`, a server that has no farm is refused as
// unknown. The folder must be there (ExistingFarmFolder). A farm of an earlier release is migrated.
std::unique_ptr<Database> OpenFarm(std::string_view server, const FillFarm& fill);

// Opens an existing farm at a path, as OpenFarm does, or returns null when the file is empty.
std::unique_ptr<Database> OpenFarmAt(const std::filesystem::path& path);

}  // namespace embedded
