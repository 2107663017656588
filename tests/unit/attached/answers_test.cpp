// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include "embedded/attached/scsi/capacity.h"
#include "embedded/attached/scsi/disc_information.h"
#include "embedded/attached/scsi/inquiry.h"
#include "embedded/attached/scsi/report_luns.h"
#include "embedded/attached/scsi/reservation.h"
#include "tests/unit/attached/refusal.h"

namespace embedded::attached {
namespace {

std::vector<uint8_t> ChangerInquiry() {
    return Joined(
        {Hex("08 80 05 02 1F 00 00 00"), Padded("MAKER", 8), Padded("LIBRARY 9000", 16), Padded("1.2", 4)});
}

TEST(InquiryTest, TellsTypeAndTexts) {
    const auto data = DecodeInquiry(ChangerInquiry());
    ASSERT_TRUE(data);
    EXPECT_EQ(data->type, DeviceType::Changer);
    EXPECT_EQ(data->qualifier, 0);
    EXPECT_TRUE(data->isRemovable);
    EXPECT_EQ(data->vendor, "MAKER");
    EXPECT_EQ(data->product, "LIBRARY 9000");
    EXPECT_EQ(data->revision, "1.2");
}

TEST(InquiryTest, TellsUnitsThatAreNotThere) {
    auto bytes = ChangerInquiry();
    bytes[0] = 0x7F;
    const auto data = DecodeInquiry(bytes);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->qualifier, 3);
    EXPECT_EQ(data->type, DeviceType::None);
}

TEST(InquiryTest, RefusesAShortAnswer) {
    auto bytes = ChangerInquiry();
    bytes.pop_back();
    EXPECT_EQ(Refusal(DecodeInquiry(bytes)), "the answer to INQUIRY ends too early, after 35 bytes");
    EXPECT_EQ(Refusal(DecodeInquiry({})), "the answer to INQUIRY ends too early, after 0 bytes");
}

TEST(SerialNumberTest, StandsAnywhereInItsField) {
    EXPECT_EQ(*DecodeSerialNumber(Hex("08 80 00 08 20 20 20 53 4E 30 31 20")), "SN01");
    EXPECT_EQ(*DecodeSerialNumber(Hex("08 80 00 00")), "");
}

TEST(SerialNumberTest, EndsWhereThePageOrTheAnswerEnds) {
    EXPECT_EQ(*DecodeSerialNumber(Hex("05 80 00 02 41 42 43 44")), "AB");
    EXPECT_EQ(*DecodeSerialNumber(Hex("05 80 00 FF 41 42")), "AB");
}

TEST(SerialNumberTest, IsRefusedWhenAnotherPageCame) {
    EXPECT_EQ(Refusal(DecodeSerialNumber(Hex("05 00 00 02 41 42"))),
              "the answer to INQUIRY is page 00h instead of 80h");
    EXPECT_EQ(Refusal(DecodeSerialNumber(Hex("05 80"))),
              "the answer to INQUIRY ends too early, after 2 bytes");
}

TEST(IdentificationTest, ListsDesignators) {
    // T10 vendor in ASCII, then NAA in binary that belongs to a port.
    const auto designators =
        DecodeIdentification(Hex("05 83 00 14 02 01 00 04 41 42 43 44 61 93 00 08 50 01 02 03 04 05 06 07"));
    ASSERT_TRUE(designators);
    ASSERT_EQ(designators->size(), 2U);
    EXPECT_EQ(designators->at(0), (Designator{2, 1, 0, Hex("41 42 43 44")}));
    EXPECT_EQ(designators->at(1), (Designator{1, 3, 1, Hex("50 01 02 03 04 05 06 07")}));
}

TEST(IdentificationTest, RefusesADesignatorThatReachesBehindThePage) {
    EXPECT_EQ(Refusal(DecodeIdentification(Hex("05 83 00 08 02 01 00 05 41 42 43 44"))),
              "the answer to INQUIRY has an identifier that reaches behind its end");
    EXPECT_EQ(Refusal(DecodeIdentification(Hex("05 83 00 02 02 01"))),
              "the answer to INQUIRY has an identifier that reaches behind its end");
}

TEST(ReportLunsTest, ListsUnitsOfOneLevel) {
    const auto list =
        DecodeReportLuns(Hex("00 00 00 20 00 00 00 00 "
                             "00 00 00 00 00 00 00 00 "
                             "00 05 00 00 00 00 00 00 "
                             "41 02 00 00 00 00 00 00 "
                             "01 05 00 00 00 00 00 00"));  // on another bus
    ASSERT_TRUE(list);
    EXPECT_EQ(list->luns, (std::vector<uint16_t>{0, 5, 0x102}));
    EXPECT_EQ(list->length, 32U);
}

TEST(ReportLunsTest, ListsWhatCameOfALongerList) {
    const auto list = DecodeReportLuns(Hex("00 00 01 00 00 00 00 00 00 01 00 x6 00 02 00"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->luns, std::vector<uint16_t>{1});
    EXPECT_EQ(list->length, 256U);
}

TEST(ReportLunsTest, RefusesAListThatEndsWithinAUnit) {
    EXPECT_EQ(Refusal(DecodeReportLuns(Hex("00 00 00 09 00 x20"))),
              "the answer to REPORT LUNS has a length that is no multiple of 8");
    EXPECT_EQ(Refusal(DecodeReportLuns(Hex("00 00 00"))),
              "the answer to REPORT LUNS ends too early, after 3 bytes");
}

TEST(ConfigurationTest, TellsTheProfileOfTheMediumAndThoseOfTheDrive) {
    // Profile list with BD-R, DVD+R (current) and CD-ROM, then the core feature.
    const auto configuration = DecodeConfiguration(Hex(
        "00 00 00 1C 00 00 00 1B 00 00 03 0C 00 41 00 00 00 1B 01 00 00 08 00 00 00 01 03 04 00 00 00 01"));
    ASSERT_TRUE(configuration);
    EXPECT_EQ(configuration->currentProfile, 0x001B);
    EXPECT_EQ(configuration->supportedProfiles, (std::vector<uint16_t>{0x0041, 0x001B, 0x0008}));
}

TEST(ConfigurationTest, KnowsTheProfileWithoutAnyFeature) {
    EXPECT_EQ(DecodeConfiguration(Hex("00 00 00 04 00 00 00 10"))->currentProfile, 0x0010);
    EXPECT_EQ(Refusal(DecodeConfiguration(Hex("00 00 00 04 00 00 00"))),
              "the answer to GET CONFIGURATION ends too early, after 7 bytes");
}

TEST(ConfigurationTest, EndsWhereTheAnswerEnds) {
    const auto configuration =
        DecodeConfiguration(Hex("FF FF FF FF 00 00 00 10 00 00 03 FC 00 10 01 00 00 41"));
    ASSERT_TRUE(configuration);
    EXPECT_EQ(configuration->supportedProfiles, std::vector<uint16_t>{0x0010});
    EXPECT_EQ(Refusal(DecodeConfiguration(Hex("00 00 00 0A 00 00 00 10 00 00 03 02 00 10"))),
              "the answer to GET CONFIGURATION has a feature of a length that is no multiple of 4");
}

TEST(DiscInformationTest, TellsABlankDisc) {
    const auto disc = DecodeDiscInformation(Hex("00 20 00 01 01 01 01 20 00 00 00 00 00 x22"));
    ASSERT_TRUE(disc);
    EXPECT_EQ(disc->status, DiscStatus::Empty);
    EXPECT_EQ(disc->lastSession, SessionStatus::Empty);
    EXPECT_FALSE(disc->isErasable);
    EXPECT_EQ(disc->sessions, 1);
    EXPECT_EQ(disc->lastTrack, 1);
}

TEST(DiscInformationTest, TellsARewritableDiscWithManyTracks) {
    const auto disc = DecodeDiscInformation(Hex("00 20 1E 01 02 34 56 03 00 01 02 03 00 x22"));
    ASSERT_TRUE(disc);
    EXPECT_EQ(disc->status, DiscStatus::Complete);
    EXPECT_EQ(disc->lastSession, SessionStatus::Complete);
    EXPECT_TRUE(disc->isErasable);
    EXPECT_EQ(disc->sessions, 0x0102);
    EXPECT_EQ(disc->firstTrackOfLastSession, 0x0234);
    EXPECT_EQ(disc->lastTrack, 0x0356);
    EXPECT_EQ(disc->backgroundFormat, BackgroundFormat::Done);
}

TEST(DiscInformationTest, RefusesAnAnswerThatIsShortByItsOwnCount) {
    EXPECT_EQ(Refusal(DecodeDiscInformation(Hex("00 09 1E 01 02 34 56 03 00 01 02 03 00 x22"))),
              "the answer to READ DISC INFORMATION ends too early, after 34 bytes");
}

TEST(TrackInformationTest, TellsWhereWritingGoesOn) {
    const auto track =
        DecodeTrackInformation(Hex("00 2E 01 01 00 04 41 01 00 00 00 00 00 00 12 34 00 23 05 40 "
                                   "00 00 00 10 00 23 17 74 00 00 00 00 00 00 00 00 00 x12"));
    ASSERT_TRUE(track);
    EXPECT_EQ(track->track, 1);
    EXPECT_EQ(track->session, 1);
    EXPECT_TRUE(track->isBlank);
    EXPECT_FALSE(track->isDamaged);
    EXPECT_EQ(track->dataMode, 1);
    EXPECT_EQ(track->nextWritable, 0x1234U);
    EXPECT_EQ(track->freeBlocks, 0x230540U);
    EXPECT_EQ(track->size, 0x231774U);
    EXPECT_FALSE(track->lastRecorded);
}

TEST(TrackInformationTest, TellsTheLastBlockThatWasWritten) {
    const auto track =
        DecodeTrackInformation(Hex("00 22 FF 02 00 24 02 02 00 01 00 00 00 00 00 00 00 00 00 00 "
                                   "00 00 00 00 00 00 40 00 00 01 3F FF 01 03 00 00"));
    ASSERT_TRUE(track);
    EXPECT_EQ(track->track, 0x01FF);
    EXPECT_EQ(track->session, 0x0302);
    EXPECT_TRUE(track->isDamaged);
    EXPECT_EQ(track->start, 0x10000U);
    EXPECT_FALSE(track->nextWritable);
    EXPECT_EQ(track->lastRecorded, 0x13FFFU);
}

TEST(TrackInformationTest, UnderstandsTheShortFormOfOlderDrives) {
    const auto track = DecodeTrackInformation(Hex("00 1A 01 01 00 04 01 03 00 x16 00 00 10 00"));
    ASSERT_TRUE(track);
    EXPECT_EQ(track->size, 0x1000U);
    EXPECT_FALSE(track->lastRecorded);
    EXPECT_EQ(Refusal(DecodeTrackInformation(Hex("00 19 01 01 00 04 01 03 00 x16 00 00 10 00"))),
              "the answer to READ TRACK INFORMATION ends too early, after 28 bytes");
}

TEST(CapacityTest, TellsTheLastBlockAndTheSizeOfBlocks) {
    const auto capacity = DecodeCapacity10(Hex("00 23 05 3F 00 00 08 00"));
    ASSERT_TRUE(capacity);
    EXPECT_EQ(capacity->lastBlock, 0x23053FU);
    EXPECT_EQ(capacity->blockSize, 2048U);
    const auto large = DecodeCapacity16(Hex("00 00 00 01 00 00 00 00 00 00 02 00 00 x20"));
    ASSERT_TRUE(large);
    EXPECT_EQ(large->lastBlock, 0x100000000U);
    EXPECT_EQ(large->blockSize, 512U);
}

TEST(CapacityTest, RefusesBlocksWithoutSize) {
    EXPECT_EQ(Refusal(DecodeCapacity10(Hex("00 00 00 01 00 00 00 00"))),
              "the answer to READ CAPACITY(10) names blocks of 0 bytes");
    EXPECT_EQ(Refusal(DecodeCapacity10(Hex("00 00 00 01 00 00 08"))),
              "the answer to READ CAPACITY(10) ends too early, after 7 bytes");
    EXPECT_EQ(Refusal(DecodeCapacity16(Hex("00 x11"))),
              "the answer to READ CAPACITY(16) ends too early, after 11 bytes");
}

TEST(FormatCapacitiesTest, ListTheFormatsThatTheMediumCanBeGiven) {
    const auto capacities =
        DecodeFormatCapacities(Hex("00 00 00 18 00 23 05 40 01 00 08 00 "
                                   "00 23 05 40 00 00 08 00 00 23 05 00 98 00 00 10"));
    ASSERT_TRUE(capacities);
    EXPECT_EQ(capacities->state, FormatState::Unformatted);
    EXPECT_EQ(capacities->blocks, 0x230540U);
    EXPECT_EQ(capacities->blockSize, 2048U);
    ASSERT_EQ(capacities->choices.size(), 2U);
    EXPECT_EQ(capacities->choices[0], (FormatCapacities::Choice{0x230540, 0x00, 2048}));
    EXPECT_EQ(capacities->choices[1], (FormatCapacities::Choice{0x230500, 0x26, 16}));
}

TEST(FormatCapacitiesTest, RefuseWhatCannotBe) {
    EXPECT_EQ(Refusal(DecodeFormatCapacities(Hex("00 00 00 09 00 23 05 40 01 00 08 00 00 x8"))),
              "the answer to READ FORMAT CAPACITIES has a length that is no multiple of 8");
    EXPECT_EQ(Refusal(DecodeFormatCapacities(Hex("00 00 00 08 00 23 05 40 00 00 08 00"))),
              "the answer to READ FORMAT CAPACITIES has no state of the medium");
    EXPECT_EQ(Refusal(DecodeFormatCapacities(Hex("00 00 00 08 00 23 05 40 01 00 08"))),
              "the answer to READ FORMAT CAPACITIES ends too early, after 11 bytes");
}

TEST(ReservationTest, TellsKeysAndHolder) {
    const auto keys =
        DecodeKeys(Hex("00 00 00 07 00 00 00 10 00 00 00 00 00 00 00 AB 01 02 03 04 05 06 07 08"));
    ASSERT_TRUE(keys);
    EXPECT_EQ(keys->generation, 7U);
    EXPECT_EQ(keys->keys, (std::vector<uint64_t>{0xAB, 0x0102030405060708}));
    const auto reservation =
        DecodeReservation(Hex("00 00 00 07 00 00 00 10 00 00 00 00 00 00 00 AB 00 00 00 00 00 03 00 00"));
    ASSERT_TRUE(reservation);
    ASSERT_TRUE(*reservation);
    EXPECT_EQ((*reservation)->key, 0xABU);
    EXPECT_EQ((*reservation)->type, 3);
}

TEST(ReservationTest, TellsThatNobodyHoldsOne) {
    const auto reservation = DecodeReservation(Hex("00 00 00 07 00 00 00 00"));
    ASSERT_TRUE(reservation);
    EXPECT_FALSE(*reservation);
}

TEST(ReservationTest, RefusesShortAnswers) {
    EXPECT_EQ(Refusal(DecodeKeys(Hex("00 00 00 07 00 00 00"))),
              "the answer to PERSISTENT RESERVE IN ends too early, after 7 bytes");
    EXPECT_EQ(Refusal(DecodeKeys(Hex("00 00 00 07 00 00 00 07 00 x8"))),
              "the answer to PERSISTENT RESERVE IN has a length that is no multiple of 8");
    EXPECT_EQ(Refusal(DecodeReservation(Hex("00 00 00 07 00 00 00 10 00 x13"))),
              "the answer to PERSISTENT RESERVE IN ends too early, after 21 bytes");
}

}  // namespace
}  // namespace embedded::attached
