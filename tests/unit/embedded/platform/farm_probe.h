// Looks into a farm's database past the library.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace embedded_test {

int64_t ReadNumber(const std::filesystem::path& farm, const std::string& statement);
std::string ReadText(const std::filesystem::path& farm, const std::string& statement);

// Runs statements that change it.
void ChangeFarm(const std::filesystem::path& farm, const std::string& script);

// Keeps others from changing a farm while it lives.
class FarmHold {
  public:
    explicit FarmHold(const std::filesystem::path& farm);
    FarmHold(const FarmHold&) = delete;
    FarmHold& operator=(const FarmHold&) = delete;
    ~FarmHold();

  private:
    sqlite3* m_connection = nullptr;
};

// Runs the statements and calls `meanwhile` while this process holds what they lock.
void Hold(const std::filesystem::path& farm, const std::string& script,
          const std::function<void()>& meanwhile);

}  // namespace embedded_test
