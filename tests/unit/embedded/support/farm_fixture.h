// A folder of farms of the test's own, empty at first and gone afterwards.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

namespace embedded_test {

class FarmHome {
  public:
    FarmHome();
    FarmHome(const FarmHome&) = delete;
    FarmHome& operator=(const FarmHome&) = delete;
    ~FarmHome();

    const std::filesystem::path& GetFolder() const { return m_folder; }

    // The file of the local server's farm.
    std::filesystem::path LocalFarm() const { return m_folder / "server-%2e.db"; }

  private:
    std::filesystem::path m_folder;
};

class FarmFixture : public testing::Test {
  protected:
    FarmHome m_home;
};

// Sets a variable of this process's environment; null removes it.
void SetEnvironment(const char* name, const char* value);

}  // namespace embedded_test
