// Looks into a farm's database past the library.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace simulator_test {

int64_t ReadNumber(const std::filesystem::path& farm, const std::string& statement);
std::string ReadText(const std::filesystem::path& farm, const std::string& statement);

// Runs statements that change it.
void ChangeFarm(const std::filesystem::path& farm, const std::string& script);

// Runs the statements and stops this process while it holds what they lock.
void HoldAndStop(const std::filesystem::path& farm, const std::string& script);

}  // namespace simulator_test
