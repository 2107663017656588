// Not on Windows: Wine cannot create symbolic links.
#include <gtest/gtest.h>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

class NewFarmOverALink : public ToolFixture {};

TEST_F(NewFarmOverALink, IsRefusedWhenTheLinkCannotBeFollowed) {
    for (const std::string target : {"unmounted/farm.db", "server-%2e.db"}) {
        std::filesystem::create_symlink(target, m_home.LocalFarm());
        EXPECT_NE(Failed({"init"}).find(" cannot be opened: "), std::string::npos);
        EXPECT_NE(Failed({"init", "--force"}).find(" cannot be opened: "), std::string::npos);
        EXPECT_EQ(std::filesystem::read_symlink(m_home.LocalFarm()), target);
        std::filesystem::remove(m_home.LocalFarm());
    }
}

}  // namespace
}  // namespace embedded_test
