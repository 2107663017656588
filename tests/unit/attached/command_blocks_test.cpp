// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include "embedded/attached/scsi/block_transfer.h"
#include "embedded/attached/scsi/capacity.h"
#include "embedded/attached/scsi/disc_information.h"
#include "embedded/attached/scsi/disc_writing.h"
#include "embedded/attached/scsi/element_status.h"
#include "embedded/attached/scsi/inquiry.h"
#include "embedded/attached/scsi/medium_control.h"
#include "embedded/attached/scsi/mode_pages.h"
#include "embedded/attached/scsi/report_luns.h"
#include "embedded/attached/scsi/reservation.h"
#include "tests/unit/attached/hex.h"

namespace embedded::attached {
namespace {

struct Case {
    const char* what;
    Cdb cdb;
    const char* bytes;
};

const Case kCases[] = {
    {"ready", TestUnitReady(), "00 00 00 00 00 00"},
    {"sense", RequestSense(252), "03 00 00 00 FC 00"},
    {"inquiry", Inquiry(96), "12 00 00 00 60 00"},
    {"serial number", InquireSerialNumber(0x0400), "12 01 80 04 00 00"},
    {"identification", InquireIdentification(0x0400), "12 01 83 04 00 00"},
    {"mode page, short", ModeSense6(0x1D, 255), "1A 08 1D 00 FF 00"},
    {"mode page, long", ModeSense10(0x1F, 0x0123), "5A 08 1F 00 00 00 00 01 23 00"},
    {"look at all elements", InitializeElementStatus(), "07 00 00 00 00 00"},
    {"look at some elements", InitializeElementStatus(0x0400, 0x0019), "37 01 04 00 00 00 00 19 00 00"},
    {"slots with tags", ReadElementStatus({ElementType::Slot, 0x0400, 0x0100, true, false, 0xFF00}),
     "B8 12 04 00 01 00 00 00 FF 00 00 00"},
    {"drives with tags and identifiers",
     ReadElementStatus({ElementType::Drive, 0x0100, 2, true, true, 0x012345}),
     "B8 14 01 00 00 02 01 01 23 45 00 00"},
    {"mail slots only", ReadElementStatus({ElementType::MailSlot, 0x0300, 1, false, false, 8}),
     "B8 03 03 00 00 01 00 00 00 08 00 00"},
    {"move", MoveMedium({0x0001, 0x0400, 0x0100, Turning::Keep}), "A5 00 00 01 04 00 01 00 00 00 00 00"},
    {"move and turn over", MoveMedium({0x0001, 0x0400, 0x0100, Turning::Invert}),
     "A5 00 00 01 04 00 01 00 00 00 01 00"},
    {"lock", PreventAllowMediumRemoval(Removal::Prevent), "1E 00 00 00 01 00"},
    {"unlock", PreventAllowMediumRemoval(Removal::Allow), "1E 00 00 00 00 00"},
    {"spin down", StartStopUnit(UnitAction::Stop, Answer::WhenDone), "1B 00 00 00 00 00"},
    {"spin up", StartStopUnit(UnitAction::Start, Answer::AtOnce), "1B 01 00 00 01 00"},
    {"eject", StartStopUnit(UnitAction::Eject, Answer::WhenDone), "1B 00 00 00 02 00"},
    {"load", StartStopUnit(UnitAction::Load, Answer::WhenDone), "1B 00 00 00 03 00"},
    {"units", ReportLuns(0x00010008), "A0 00 00 00 00 00 00 01 00 08 00 00"},
    {"configuration", GetConfiguration(0x1000), "46 00 00 00 00 00 00 10 00 00"},
    {"disc", ReadDiscInformation(34), "51 00 00 00 00 00 00 00 22 00"},
    {"track", ReadTrackInformation(1, 48), "52 01 00 00 00 01 00 00 30 00"},
    {"open track", ReadTrackInformation(0xFF, 48), "52 01 00 00 00 FF 00 00 30 00"},
    {"capacity", ReadCapacity10(), "25 00 00 00 00 00 00 00 00 00"},
    {"large capacity", ReadCapacity16(32), "9E 10 00 00 00 00 00 00 00 00 00 00 00 20 00 00"},
    {"format capacities", ReadFormatCapacities(252), "23 00 00 00 00 00 00 00 FC 00"},
    {"read", Read10(0x01020304, 0x0506), "28 00 01 02 03 04 00 05 06 00"},
    {"read much", Read12(0x01020304, 0x05060708), "A8 00 01 02 03 04 05 06 07 08 00 00"},
    {"write", Write10(0x01020304, 0x0506), "2A 00 01 02 03 04 00 05 06 00"},
    {"write much", Write12(0x01020304, 0x05060708), "AA 00 01 02 03 04 05 06 07 08 00 00"},
    {"flush", SynchronizeCache(), "35 00 00 00 00 00 00 00 00 00"},
    {"close a track", CloseTrackSession(CloseFunction::Track, 0x0102, Answer::AtOnce),
     "5B 01 01 00 01 02 00 00 00 00"},
    {"close the session", CloseTrackSession(CloseFunction::Session, 0, Answer::WhenDone),
     "5B 00 02 00 00 00 00 00 00 00"},
    {"finalize", CloseTrackSession(CloseFunction::Finalize, 0, Answer::WhenDone),
     "5B 00 06 00 00 00 00 00 00 00"},
    {"blank all", Blank(BlankExtent::Disc, Answer::AtOnce), "A1 10 00 00 00 00 00 00 00 00 00 00"},
    {"blank the least", Blank(BlankExtent::Minimal, Answer::WhenDone), "A1 01 00 00 00 00 00 00 00 00 00 00"},
    {"format", FormatUnit(), "04 00 00 00 00 00"},
    {"format with parameters", FormatUnitAs(), "04 11 00 00 00 00"},
    {"keys", ReadKeys(0x0808), "5E 00 00 00 00 00 00 08 08 00"},
    {"reservation", ReadReservation(24), "5E 01 00 00 00 00 00 00 18 00"},
    {"register", PersistentReserveOut(ReserveAction::Register, ReservationType::ExclusiveAccess),
     "5F 00 03 00 00 00 00 00 18 00"},
    {"reserve", PersistentReserveOut(ReserveAction::Reserve, ReservationType::WriteExclusive),
     "5F 01 01 00 00 00 00 00 18 00"},
    {"preempt", PersistentReserveOut(ReserveAction::Preempt, ReservationType::ExclusiveAccess),
     "5F 04 03 00 00 00 00 00 18 00"},
};

TEST(CommandBlocksTest, AreLaidOutAsTheStandardsSay) {
    for (const Case& c : kCases) {
        const Bytes bytes = c.cdb.GetBytes();
        EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.end()), Hex(c.bytes)) << c.what;
    }
}

TEST(CommandBlocksTest, FormatParametersNameTheFormatAndItsSize) {
    const FormatCapacities::Choice choice{0x00112233, 0x26, 0x00AABBCC};
    const auto whenDone = FormatParameters(choice, Answer::WhenDone);
    EXPECT_EQ(std::vector<uint8_t>(whenDone.begin(), whenDone.end()),
              Hex("00 80 00 08 00 11 22 33 98 AA BB CC"));
    EXPECT_EQ(FormatParameters(choice, Answer::AtOnce)[1], 0x82);
}

TEST(CommandBlocksTest, ReserveParametersHoldBothKeys) {
    const auto parameters = ReserveParameters(0x0102030405060708, 0x1112131415161718);
    EXPECT_EQ(std::vector<uint8_t>(parameters.begin(), parameters.end()),
              Hex("01 02 03 04 05 06 07 08 11 12 13 14 15 16 17 18 00 x8"));
}

}  // namespace
}  // namespace embedded::attached
