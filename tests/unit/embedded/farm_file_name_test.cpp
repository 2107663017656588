#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/store/farm_file.h"

namespace embedded_test {
namespace {

struct NameCase {
    std::string server;
    const char* file;
};

TEST(FarmFileName, IsSafeOnEveryPlatformAndCanBeReadBack) {
    const std::vector<NameCase> cases = {
        {".", "server-%2e.db"},
        {"my_server", "server-my_server.db"},
        {"My Server", "server-%4dy%20%53erver.db"},
        {"sales server", "server-sales%20server.db"},
        {"host-7", "server-host-7.db"},
        {"..", "server-%2e%2e.db"},
        {"a/b\\c", "server-a%2fb%5cc.db"},
        {"%2e", "server-%252e.db"},
        {std::string("a\0b", 3), "server-a%00b.db"},
        {"\xFF\n", "server-%ff%0a.db"},
    };
    for (const NameCase& expected : cases) {
        EXPECT_EQ(embedded::FarmFileName(expected.server), expected.file);
        EXPECT_EQ(embedded::ServerOfFileName(expected.file), expected.server);
    }
}

TEST(FarmFileName, OtherFilesStandForNoServer) {
    for (const char* file : {"", "server-", "server-.db", "notes.txt", "server-x.db-wal", "server-%2.db",
                             "server-%zz.db", "server-%", "x-server-y.db"}) {
        EXPECT_EQ(embedded::ServerOfFileName(file), "") << file;
    }
}

TEST(FarmFileName, NamesThatDifferOnlyInCaseHaveFilesThatDifferInMore) {
    EXPECT_NE(embedded::FarmFileName("MyServer"), embedded::FarmFileName("myserver"));
    EXPECT_EQ(embedded::FarmFileName("M"), "server-%4d.db");
}

}  // namespace
}  // namespace embedded_test
