// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>

#include "tests/emulated_jukebox/emulated_jukebox.h"
#include "tests/unit/krvadm/tool_run.h"

namespace embedded::tools {
namespace {

using attached::EmulatedJukebox;

// The texts with "PORT" for the number that is another one each time.
std::string WithoutPort(std::string text, const EmulatedJukebox& jukebox) {
    const std::string portal = jukebox.GetPortal();
    const std::string port = portal.substr(portal.find(':') + 1);
    for (size_t at = text.find(port); at != std::string::npos; at = text.find(port, at))
        text.replace(at, port.size(), "PORT");
    return text;
}

class KrvadmJukeboxTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_jukebox = std::make_unique<EmulatedJukebox>(
            "--slots 4 --drives 2 --mailslots 1 --discs 1 --blank 1 --double-sided");
    }
    static void TearDownTestSuite() { s_jukebox.reset(); }

    static std::unique_ptr<EmulatedJukebox> s_jukebox;
};
std::unique_ptr<EmulatedJukebox> KrvadmJukeboxTest::s_jukebox;

TEST_F(KrvadmJukeboxTest, DiscoversTheChangerItsElementsAndItsDrives) {
    const ToolRun run = RunKrvadm({"discover", "--portal", s_jukebox->GetPortal()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(WithoutPort(run.out, *s_jukebox),
              "Changer iscsi://127.0.0.1:PORT/iqn.2026-11.example:jukebox-PORT/3\n"
              "  Model          EMULATED CHANGER 0001\n"
              "  Serial number  CHGPORT\n"
              "  Slots          4 (1024 to 1027)\n"
              "  Mail slots     1 (768)\n"
              "  Drives         2 (256 to 257)\n"
              "  Turns media    yes\n"
              "  Drive  Model              Serial number  Known by\n"
              "  256    EMULATED DVD 0001  DRVPORT01     identifier\n"
              "  257    EMULATED DVD 0001  DRVPORT02     part of identifier\n"
              "  Drive 256 is iscsi://127.0.0.1:PORT/iqn.2026-11.example:jukebox-PORT/1\n"
              "  Drive 257 is iscsi://127.0.0.1:PORT/iqn.2026-11.example:jukebox-PORT/2\n");
}

TEST_F(KrvadmJukeboxTest, KeepsWithinTheColumnsOfATerminal) {
    std::istringstream lines(RunKrvadm({"discover", "--portal", s_jukebox->GetPortal()}).out);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80U) << line;
}

TEST_F(KrvadmJukeboxTest, DiscoversTheSameAsJson) {
    const ToolRun run = RunKrvadm({"discover", "--json", "--portal", s_jukebox->GetPortal()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(WithoutPort(run.out, *s_jukebox), R"({
  "changers": [
    {
      "address": "iscsi://127.0.0.1:PORT/iqn.2026-11.example:jukebox-PORT/3",
      "vendor": "EMULATED",
      "product": "CHANGER",
      "revision": "0001",
      "serialNumber": "CHGPORT",
      "elements": {
        "slots": {
          "first": 1024,
          "count": 4
        },
        "drives": {
          "first": 256,
          "count": 2
        },
        "mailSlots": {
          "first": 768,
          "count": 1
        },
        "pickers": {
          "first": 1,
          "count": 1
        }
      },
      "turnsMedia": true,
      "drives": [
        {
          "element": 256,
          "knownBy": "identifier",
          "devices": [
            {
              "address": "iscsi://127.0.0.1:PORT/iqn.2026-11.example:jukebox-PORT/1",
              "vendor": "EMULATED",
              "product": "DVD",
              "revision": "0001",
              "serialNumber": "DRVPORT01"
            }
          ]
        },
        {
          "element": 257,
          "knownBy": "part of identifier",
          "devices": [
            {
              "address": "iscsi://127.0.0.1:PORT/iqn.2026-11.example:jukebox-PORT/2",
              "vendor": "EMULATED",
              "product": "DVD",
              "revision": "0001",
              "serialNumber": "DRVPORT02"
            }
          ]
        }
      ]
    }
  ],
  "otherDrives": []
}
)");
}

TEST_F(KrvadmJukeboxTest, ShowsWhatTheElementsHold) {
    const ToolRun run = RunKrvadm({"inventory", s_jukebox->GetAddress()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out,
              "Element  Kind       State  Volume tag  Came from  Remark\n"
              "768      mail slot  empty  -           -\n"
              "256      drive      empty  -           -\n"
              "257      drive      empty  -           -\n"
              "1024     slot       full   D000001     -\n"
              "1025     slot       full   D000002     -\n"
              "1026     slot       empty  -           -\n"
              "1027     slot       empty  -           -\n");
}

TEST_F(KrvadmJukeboxTest, ShowsHostileTagsWithoutHarmToTheTerminal) {
    s_jukebox->Run("tgtadm",
                   "--mode logicalunit --op update --tid 1 --lun 3 --params "
                   "\"element_type=2,address=1026,barcode=D000002,volume_tag=$(printf 'A\\033[31m')\"");
    const ToolRun run = RunKrvadm({"inventory", s_jukebox->GetAddress()});
    EXPECT_NE(run.out.find("1026     slot       full   A?[31m"), std::string::npos) << run.out;
    s_jukebox->Run("remove", "1026");
}

TEST_F(KrvadmJukeboxTest, ShowsElementsAsJson) {
    const ToolRun run = RunKrvadm({"inventory", "--json", s_jukebox->GetAddress()});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("  {\n    \"element\": 1024,\n    \"kind\": \"slot\",\n    \"full\": true,\n    "
                           "\"volumeTag\": \"D000001\"\n  }"),
              std::string::npos)
        << run.out;
}

TEST_F(KrvadmJukeboxTest, TellsThatADriveIsNoChanger) {
    const ToolRun run = RunKrvadm({"inventory", s_jukebox->GetDriveAddress(1)});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "krvadm: " + s_jukebox->GetDriveAddress(1) + " is no changer\n");
}

TEST_F(KrvadmJukeboxTest, TellsThatThereIsNoHost) {
    const ToolRun run = RunKrvadm({"discover", "--portal", "no-such-host.invalid"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("krvadm: ")) << run.err;
    EXPECT_NE(run.err.find("no-such-host.invalid"), std::string::npos) << run.err;
}

// Its daemon is killed, and its target asks for a secret.
class KrvadmLoginTest : public testing::Test {
  protected:
    ~KrvadmLoginTest() override { std::filesystem::remove(m_credentials); }

    void Write(const std::string& secret) {
        std::ofstream(m_credentials) << "user = operator\nsecret = " << secret << '\n';
        std::filesystem::permissions(m_credentials, std::filesystem::perms::owner_all);
    }

    const std::string m_credentials =
        testing::TempDir() + "login-" + testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(KrvadmLoginTest, NeedsTheRightSecretAndARunningTarget) {
    const EmulatedJukebox jukebox("--slots 2 --user operator --secret opensesame42");
    const std::vector<std::string> discover = {"discover", "--portal", jukebox.GetPortal(), "--credentials",
                                               m_credentials};
    const std::string peer = jukebox.GetTarget() + " at " + jukebox.GetPortal();

    Write("opensesame42");
    const ToolRun right = RunKrvadm(discover);
    EXPECT_EQ(right.status, 0);
    EXPECT_EQ(right.err, "");
    EXPECT_TRUE(right.out.starts_with("Changer iscsi://")) << right.out;

    Write("closedsesame");
    const ToolRun wrong = RunKrvadm(discover);
    EXPECT_EQ(wrong.status, 1);
    EXPECT_EQ(wrong.err,
              "krvadm: " + peer +
                  " does not accept the user or the secret\nkrvadm: not every device could be asked\n");
    EXPECT_EQ(wrong.out, "No changer was found.\n");

    const ToolRun without = RunKrvadm({"discover", "--portal", jukebox.GetPortal()});
    EXPECT_EQ(without.status, 1);
    EXPECT_EQ(without.err,
              "krvadm: " + peer + " asks for a user and a secret\nkrvadm: not every device could be asked\n");

    jukebox.Run("kill");
    const ToolRun gone = RunKrvadm(discover);
    EXPECT_EQ(gone.status, 1);
    EXPECT_EQ(gone.err, "krvadm: " + jukebox.GetPortal() +
                            " refuses the connection; check the port, and that the target is running\n");
    EXPECT_EQ(gone.out, "");
}

}  // namespace
}  // namespace embedded::tools
