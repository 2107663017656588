// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "tools/krvadm/credentials.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tools/common/streams.h"

namespace embedded::tools {
namespace {

namespace fs = std::filesystem;

class CredentialsTest : public testing::Test {
  protected:
    ~CredentialsTest() override { fs::remove(m_file); }

    attached::IscsiLogin Read(const std::string& content) {
        std::ofstream(m_file) << content;
        fs::permissions(m_file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
        return ReadCredentials(m_file);
    }

    std::string Refusal(const std::string& content) {
        try {
            Read(content);
        } catch (const ToolFailure& failure) {
            return failure.what();
        }
        return "accepted";
    }

    const fs::path m_file =
        testing::TempDir() + "credentials-" + testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(CredentialsTest, HoldUserAndSecret) {
    const auto login = Read("# of the tower\n\nuser = operator\n\tsecret=open = sesame \r\n");
    EXPECT_EQ(login.user, "operator");
    EXPECT_EQ(login.secret, "open = sesame");
    EXPECT_EQ(login.initiator, "");
}

TEST_F(CredentialsTest, MayNameTheInitiatorAlone) {
    EXPECT_EQ(Read("initiator = iqn.2001-04.com.example:archive\n").initiator,
              "iqn.2001-04.com.example:archive");
}

TEST_F(CredentialsTest, AreNoneWithoutAFile) {
    EXPECT_EQ(ReadCredentials("").user, "");
}

TEST_F(CredentialsTest, SayWhichLineIsWrongWithoutShowingIt) {
    const std::string expected =
        m_file.string() + ", line 2: expected \"user = NAME\", \"secret = TEXT\" or \"initiator = NAME\"";
    EXPECT_EQ(Refusal("user = operator\nsesame\n"), expected);
    EXPECT_EQ(Refusal("user = operator\nsecret =\n"), expected);
    EXPECT_EQ(Refusal("user = operator\npassword = sesame\n"), expected);
}

TEST_F(CredentialsTest, HoldAUserAndASecretTogether) {
    EXPECT_EQ(Refusal("user = operator\n"), m_file.string() + " must hold a user and a secret");
    EXPECT_EQ(Refusal("secret = sesame\n"), m_file.string() + " must hold a user and a secret");
}

TEST_F(CredentialsTest, AreRefusedWhenEveryUserMayReadOrChangeThem) {
    for (const fs::perms right : {fs::perms::others_read, fs::perms::others_write}) {
        Read("user = operator\nsecret = sesame\n");
        fs::permissions(m_file, right, fs::perm_options::add);
        try {
            ReadCredentials(m_file);
            ADD_FAILURE() << "accepted";
        } catch (const ToolFailure& failure) {
            EXPECT_EQ(std::string(failure.what()), "every user may read or change " + m_file.string() +
                                                       "; take that right away: chmod o-rw " +
                                                       m_file.string());
        }
    }
}

TEST_F(CredentialsTest, AreRefusedWhenTheFileIsNotThere) {
    EXPECT_THROW(ReadCredentials("/no-such-folder/credentials"), ToolFailure);
    EXPECT_THROW(ReadCredentials(testing::TempDir()), ToolFailure);
}

}  // namespace
}  // namespace embedded::tools
