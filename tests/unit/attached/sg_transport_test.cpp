// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "embedded/attached/transport/sg_transport.h"

#include <gtest/gtest.h>
#include <scsi/sg.h>

#include "tests/unit/attached/hex.h"

namespace embedded::attached {
namespace {

class SgResultTest : public testing::Test {
  protected:
    SgResultTest() {
        m_header.sbp = m_sense.data();
        m_header.dxfer_len = 100;
    }

    Result<Completion> Interpret() { return InterpretSgResult("/dev/sg3", m_header); }

    std::vector<uint8_t> m_sense = Hex("70 00 05 00");
    sg_io_hdr m_header{};
};

TEST_F(SgResultTest, IsGoodWithTheBytesThatCame) {
    m_header.resid = 40;
    const auto completion = Interpret();
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->status, scsi_status::kGood);
    EXPECT_EQ(completion->transferred, 60U);
    EXPECT_TRUE(completion->sense.empty());
}

TEST_F(SgResultTest, HoldsTheSenseDataOfTheDevice) {
    m_header.status = scsi_status::kCheckCondition;
    m_header.driver_status = 0x08;
    m_header.sb_len_wr = 4;
    const auto completion = Interpret();
    ASSERT_TRUE(completion);
    EXPECT_EQ(completion->status, scsi_status::kCheckCondition);
    EXPECT_EQ(completion->sense, Hex("70 00 05 00"));
}

TEST_F(SgResultTest, NeverCountsMoreBytesThanThereIsRoomFor) {
    m_header.resid = -5;
    EXPECT_EQ(Interpret()->transferred, 100U);
    m_header.resid = 101;
    EXPECT_EQ(Interpret()->transferred, 0U);
}

TEST_F(SgResultTest, TellsATimeOut) {
    m_header.host_status = 0x03;
    EXPECT_EQ(Interpret().GetError().kind, ErrorKind::TimedOut);
    EXPECT_EQ(Interpret().GetError().text, "/dev/sg3 did not answer in time; check its power and its cable");
    m_header.host_status = 0;
    m_header.driver_status = 0x06;
    EXPECT_EQ(Interpret().GetError().kind, ErrorKind::TimedOut);
}

TEST_F(SgResultTest, TellsADeviceThatCannotBeReached) {
    m_header.host_status = 0x01;
    EXPECT_EQ(Interpret().GetError().kind, ErrorKind::Lost);
    EXPECT_EQ(
        Interpret().GetError().text,
        "/dev/sg3 cannot be reached (host status 01h, driver status 00h); check its power and its cable");
}

}  // namespace
}  // namespace embedded::attached
