// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "embedded/attached/device/device.h"

#include "embedded/attached/device/identity.h"
#include "embedded/attached/scsi/block_transfer.h"
#include "embedded/attached/scsi/inquiry.h"
#include "embedded/attached/scsi/medium_control.h"
#include "tests/unit/attached/scripted_device.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;

constexpr const char* kReady = "00 00 00 00 00 00";
constexpr const char* kMove = "A5 00 00 01 04 00 01 00 00 00 00 00";
constexpr const char* kInquiry96 = "12 00 00 00 60 00";

class DeviceTest : public testing::Test {
  protected:
    Result<Nothing> IsReady(milliseconds limit = milliseconds(60'000)) {
        return m_script.Get().WaitUntilReady(limit);
    }
    Result<Nothing> Move() {
        return m_script.Get().Do(MoveMedium({1, 1024, 256, Turning::Keep}), milliseconds(300'000));
    }

    ScriptedDevice m_script{"Drive 2"};
};

TEST_F(DeviceTest, ReturnsWhatCameOfAnAnswer) {
    m_script.Answers(kInquiry96, Hex("01 02 03"));
    EXPECT_EQ(*m_script.Get().Ask(Inquiry(96), 96), Hex("01 02 03"));
}

TEST_F(DeviceTest, AsksAgainAfterUnitAttentionsAndRemembersWhatChanged) {
    m_script.Fails(kReady, {0x6, 0x29, 0x00});
    m_script.Fails(kReady, {0x6, 0x28, 0x00});
    m_script.Answers(kReady, {});
    EXPECT_TRUE(IsReady());
    EXPECT_EQ(m_script.Get().TakeChanges(), (std::set<Change>{Change::Medium, Change::Reset}));
    EXPECT_EQ(m_script.Get().TakeChanges(), std::set<Change>());
    EXPECT_EQ(m_script.GetPaused(), milliseconds(0));
}

TEST_F(DeviceTest, EndsWithADeviceThatReportsAttentionsWithoutEnd) {
    for (int i = 0; i < 16; ++i)
        m_script.Fails(kReady, {0x6, 0x28, 0x00});
    EXPECT_EQ(IsReady().GetError().kind, ErrorKind::Attention);
}

TEST_F(DeviceTest, DoesNotRepeatAMoveAfterAUnitAttention) {
    m_script.Fails(kMove, {0x6, 0x28, 0x01});
    const auto moved = Move();
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.GetError().kind, ErrorKind::Attention);
    EXPECT_EQ(moved.GetError().text, "Drive 2 reports that its mail slots were used (sense 6/28/01)");
    EXPECT_EQ(m_script.Get().TakeChanges(), std::set<Change>{Change::ImportExport});
}

TEST_F(DeviceTest, WaitsWhileTheDeviceIsBecomingReady) {
    for (int i = 0; i < 3; ++i)
        m_script.Fails(kReady, {0x2, 0x04, 0x01});
    m_script.Answers(kReady, {});
    EXPECT_TRUE(IsReady());
    EXPECT_EQ(m_script.GetPaused(), milliseconds(100 + 200 + 400));
}

TEST_F(DeviceTest, WaitsNoLongerThanTheLimit) {
    for (int i = 0; i < 4; ++i)
        m_script.Fails(kReady, {0x2, 0x04, 0x01});
    const auto ready = IsReady(milliseconds(1'000));
    ASSERT_FALSE(ready);
    EXPECT_EQ(ready.GetError().text, "Drive 2 is becoming ready; try again in a minute (sense 2/04/01)");
    EXPECT_LT(m_script.GetPaused(), milliseconds(1'000));
}

TEST_F(DeviceTest, WaitsBeforeAMoveWhileTheDeviceIsBusy) {
    m_script.Ends(kMove, scsi_status::kBusy);
    m_script.Ends(kMove, scsi_status::kTaskSetFull);
    m_script.Fails(kMove, {0x2, 0x04, 0x01});
    m_script.Answers(kMove, {});
    EXPECT_TRUE(Move());
}

TEST_F(DeviceTest, DoesNotWaitForAMediumThatIsNotThere) {
    m_script.Fails(kReady, {0x2, 0x3A, 0x00});
    const auto ready = IsReady();
    EXPECT_EQ(ready.GetError().kind, ErrorKind::Refused);
    EXPECT_EQ(ready.GetError().sense, (SenseCode{0x2, 0x3A, 0x00}));
    EXPECT_EQ(ready.GetError().text, "Drive 2 holds no medium; insert one (sense 2/3A/00)");
}

TEST_F(DeviceTest, TriesWhatWasBrokenOffTwiceMore) {
    m_script.Fails(kReady, {0xB, 0x47, 0x00});
    m_script.Ends(kReady, scsi_status::kTaskAborted);
    m_script.Answers(kReady, {});
    EXPECT_TRUE(IsReady());
}

TEST_F(DeviceTest, DoesNotRepeatAMoveThatWasBrokenOff) {
    m_script.Fails(kMove, {0xB, 0x47, 0x00});
    EXPECT_EQ(Move().GetError().text, "Drive 2 met faults on the cable; check its cable (sense B/47/00)");
}

TEST_F(DeviceTest, TakesARecoveredErrorForSuccess) {
    m_script.Fails(kMove, {0x1, 0x17, 0x01});
    EXPECT_TRUE(Move());
}

TEST_F(DeviceTest, TellsErrorsOfEarlierCommands) {
    m_script.GetTransport().Play({Hex(kReady),
                                  {},
                                  scsi_status::kCheckCondition,
                                  Hex("71 00 03 00 00 00 00 0A 00 x4 0C 00 00 x4"),
                                  {},
                                  {}});
    EXPECT_EQ(
        IsReady().GetError().text,
        "Drive 2, during an earlier command, failed to write the medium; use another disc (sense 3/0C/00)");
}

TEST_F(DeviceTest, TellsThatAnotherHostHasTheDevice) {
    m_script.Ends(kReady, scsi_status::kReservationConflict);
    EXPECT_EQ(IsReady().GetError().kind, ErrorKind::Reserved);
}

TEST_F(DeviceTest, TellsAStatusWithoutAReason) {
    m_script.Ends(kReady, scsi_status::kCheckCondition);
    EXPECT_EQ(IsReady().GetError().text, "Drive 2 ends TEST UNIT READY with status 02h and does not say why");
}

TEST_F(DeviceTest, AsksAgainOverANewConnection) {
    m_script.Loses(kReady);
    m_script.Answers(kReady, {});
    EXPECT_TRUE(IsReady());
    EXPECT_EQ(m_script.GetTransport().GetReconnectCount(), 1U);
    EXPECT_EQ(m_script.Get().TakeChanges(), std::set<Change>{Change::Reset});
}

TEST_F(DeviceTest, MakesANewConnectionOnceOnly) {
    m_script.Loses(kReady);
    m_script.Loses(kReady);
    const auto ready = IsReady();
    EXPECT_EQ(ready.GetError().kind, ErrorKind::Lost);
    EXPECT_EQ(ready.GetError().text, "Drive 2: the cable is out");
    EXPECT_EQ(m_script.GetTransport().GetReconnectCount(), 1U);
}

TEST_F(DeviceTest, TellsWhyThereIsNoNewConnection) {
    m_script.Loses(kReady);
    m_script.GetTransport().FailReconnect(Error{ErrorKind::Unreachable, "nobody answers", {}});
    EXPECT_EQ(IsReady().GetError().text, "Drive 2: nobody answers");
}

TEST_F(DeviceTest, NeverRepeatsAMoveWhoseEndIsNotKnown) {
    m_script.Loses(kMove);
    EXPECT_EQ(Move().GetError().kind, ErrorKind::Lost);
    EXPECT_EQ(m_script.GetTransport().GetReconnectCount(), 0U);
    // The next command has a new connection from the start.
    m_script.Answers(kMove, {});
    EXPECT_TRUE(Move());
    EXPECT_EQ(m_script.GetTransport().GetReconnectCount(), 1U);
}

TEST_F(DeviceTest, SendsDataAlong) {
    m_script.GetTransport().Play({Hex("2A 00 00 00 00 07 00 00 01 00"), {}, 0, {}, Hex("AB x8"), {}});
    EXPECT_TRUE(m_script.Get().Do(Write10(7, 1), milliseconds(1'000), Hex("AB x8")));
}

TEST_F(DeviceTest, HasNoSerialNumberWhenTheDeviceKnowsNoSuchPage) {
    m_script.Answers(kInquiry96, Joined({Hex("05 80 05 02 1F 00 00 00"), Padded("MAKER", 8),
                                         Padded("BD WRITER", 16), Padded("1.0", 4)}));
    m_script.Fails("12 01 80 04 00 00", {0x5, 0x24, 0x00});
    m_script.Answers("12 01 83 04 00 00", Hex("05 00 00 02 00 83"));
    const auto identity = ReadIdentity(m_script.Get());
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->GetModel(), "MAKER BD WRITER 1.0");
    EXPECT_EQ(identity->serialNumber, "");
    EXPECT_TRUE(identity->designators.empty());
}

TEST_F(DeviceTest, IsNamedInWhatItsAnswerGetsWrong) {
    m_script.Answers(kInquiry96, Hex("05 80"));
    EXPECT_EQ(ReadIdentity(m_script.Get()).GetError().text,
              "Drive 2: the answer to INQUIRY ends too early, after 2 bytes");
}

TEST(ScriptedTransportTest, FailsTheCommandThatItWasTold) {
    ScriptedTransport transport("script");
    for (int i = 0; i < 2; ++i)
        transport.Play({Hex(kReady), {}, 0, {}, {}, {}});
    transport.FailCommand(2, {ErrorKind::TimedOut, "too slow", {}});
    const auto cdb = Hex(kReady);
    EXPECT_TRUE(transport.Send({cdb, {}, {}}));
    EXPECT_EQ(transport.Send({cdb, {}, {}}).GetError().text, "too slow");
    EXPECT_FALSE(transport.IsConnected());
    EXPECT_EQ(transport.Send({cdb, {}, {}}).GetError().text, "script is not connected");
    EXPECT_TRUE(transport.Reconnect());
    EXPECT_TRUE(transport.Send({cdb, {}, {}}));
    EXPECT_EQ(transport.GetExchangesLeft(), 0U);
}

TEST(ScriptedTransportTest, NotesWhatIsNotInTheScript) {
    ScriptedTransport transport("script");
    transport.Play({Hex("00 x6"), {}, 0, {}, {}, {}});
    EXPECT_FALSE(transport.Send({Hex("12 00 00 00 60 00"), {}, {}}));
    EXPECT_FALSE(transport.Send({Hex("00 x6"), {}, {}}));
    EXPECT_EQ(transport.GetDeviations(),
              (std::vector<std::string>{"expected 00 00 00 00 00 00, got 12 00 00 00 60 00",
                                        "nothing is left for 00 00 00 00 00 00"}));
}

}  // namespace
}  // namespace embedded::attached
