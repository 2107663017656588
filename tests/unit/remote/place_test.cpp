#include "embedded/remote/servers/place.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/remote/client/connection.h"

namespace embedded::remote {
namespace {

TEST(PlaceTest, NamesAHost) {
    const auto place = ParsePlace("ssh://archive.example");
    ASSERT_TRUE(place.has_value());
    EXPECT_EQ(place->host, "archive.example");
    EXPECT_EQ(place->user, "");
    EXPECT_FALSE(place->port.has_value());
    EXPECT_EQ(place->server, "");
}

TEST(PlaceTest, NamesUserPortAndServer) {
    const auto place = ParsePlace("ssh://operator@[fe80::1%eth0]:2222/My%20Server/-x $(y)");
    ASSERT_TRUE(place.has_value());
    EXPECT_EQ(place->user, "operator");
    EXPECT_EQ(place->host, "fe80::1%eth0");
    EXPECT_EQ(place->port, 2222);
    EXPECT_EQ(place->server, "My Server/-x $(y)");
}

TEST(PlaceTest, RefusesWhatCouldBeAnOptionOrAWordForAShell) {
    for (const char* text : {"",
                             "archive",
                             "http://archive",
                             "ssh://",
                             "ssh:///vault",
                             "ssh://-oProxyCommand=x",
                             "ssh://-x/vault",
                             "ssh://a b",
                             "ssh://a\nb",
                             "ssh://$(x)",
                             "ssh://a;b",
                             "ssh://a`b`",
                             "ssh://\"a\"",
                             "ssh://a'b",
                             "ssh://-l@archive",
                             "ssh://a b@archive",
                             "ssh://$(x)@archive",
                             "ssh://@archive",
                             "ssh://archive:",
                             "ssh://archive:0",
                             "ssh://archive:65536",
                             "ssh://archive:-p",
                             "ssh://archive:22x",
                             "ssh://[::1",
                             "ssh://[::1]x",
                             "ssh://archive/%2",
                             "ssh://archive/%zz",
                             "ssh://archive/%00"}) {
        EXPECT_FALSE(ParsePlace(text).has_value()) << text;
    }
    EXPECT_FALSE(ParsePlace("ssh://" + std::string(254, 'a')).has_value());
    EXPECT_FALSE(ParsePlace("ssh://a/" + std::string(65, 'a')).has_value());
}

TEST(SshArgumentsTest, EndTheOptionsBeforeTheHostAndNeverNameTheServer) {
    const std::vector<std::string> words = SshArguments({"operator", "archive.example", 2222, "-x $(y)"});
    const std::vector<std::string> end(words.end() - 8, words.end());
    EXPECT_EQ(end, (std::vector<std::string>{"-p", "2222", "-l", "operator", "--", "archive.example",
                                             "krvadm", "serve"}));
    EXPECT_EQ(words.front(), "-T");
    EXPECT_EQ(words[2], "BatchMode=yes");
}

}  // namespace
}  // namespace embedded::remote
