// Not on Windows: files have no modes there.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

mode_t ModeOf(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

// A folder of farms with this mode, in which the first call makes the demonstration farm.
class SharedFolder : public FarmFixture {
  protected:
    std::filesystem::path MakeFarm(mode_t mode) {
        const std::filesystem::path& folder = m_home.GetFolder();
        EXPECT_EQ(chmod(folder.c_str(), mode), 0);
        Client client;
        EXPECT_EQ(client.LabelOf(33), "Sales 2004");
        return folder / "server-%2e.db";
    }

    // The process's own mask must not matter.
    mode_t m_mask = umask(0077);

    void TearDown() override {
        umask(m_mask);
        FarmFixture::TearDown();
    }
};

TEST_F(SharedFolder, ItsGroupMayUseTheFarm) {
    EXPECT_EQ(ModeOf(MakeFarm(02770)), 0660U);
}

TEST_F(SharedFolder, OnlyTheOwnerMayUseFarmsElsewhere) {
    EXPECT_EQ(ModeOf(MakeFarm(0770)), 0600U);
}

}  // namespace
}  // namespace embedded_test
