// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "embedded/attached/scsi/sense.h"

#include <gtest/gtest.h>

#include <set>

#include "embedded/attached/scsi/sense_meanings.h"
#include "tests/unit/attached/hex.h"

namespace embedded::attached {
namespace {

TEST(SenseTest, ReadsTheFixedFormat) {
    const auto sense = DecodeSense(Hex("F0 00 03 00 00 12 34 0A 00 x4 11 05 00 x4"));
    ASSERT_TRUE(sense);
    EXPECT_EQ(sense->code, (SenseCode{0x3, 0x11, 0x05}));
    EXPECT_EQ(sense->information, 0x1234U);
    EXPECT_FALSE(sense->isDeferred);
    EXPECT_FALSE(sense->progress);
}

TEST(SenseTest, ReadsTheDescriptorFormat) {
    // An information descriptor, then a sense key specific one.
    const auto sense = DecodeSense(
        Hex("72 02 04 04 00 00 00 14 00 0A 80 00 00 00 00 01 00 00 00 02 02 06 00 00 80 40 00 00"));
    ASSERT_TRUE(sense);
    EXPECT_EQ(sense->code, (SenseCode{0x2, 0x04, 0x04}));
    EXPECT_EQ(sense->information, 0x0000000100000002U);
    EXPECT_EQ(sense->progress, 0x4000);
}

TEST(SenseTest, ReadsTheProgressOfADeviceThatIsNotReady) {
    const auto sense = DecodeSense(Hex("70 00 02 00 00 00 00 0A 00 x4 04 04 00 80 80 00"));
    ASSERT_TRUE(sense);
    EXPECT_EQ(sense->progress, 0x8000);
    EXPECT_FALSE(sense->information);
}

TEST(SenseTest, TakesFieldPointersOfRefusedCommandsForNoProgress) {
    const auto sense = DecodeSense(Hex("70 00 05 00 00 00 00 0A 00 x4 24 00 00 C0 00 02"));
    ASSERT_TRUE(sense);
    EXPECT_FALSE(sense->progress);
}

TEST(SenseTest, TellsErrorsOfEarlierCommandsApart) {
    EXPECT_TRUE(DecodeSense(Hex("71 00 03 00 00 00 00 0A 00 x4 0C 00 00 x4"))->isDeferred);
    EXPECT_TRUE(DecodeSense(Hex("73 03 0C 00 00 00 00 00"))->isDeferred);
}

TEST(SenseTest, ReadsWhatShortDataHold) {
    EXPECT_EQ(DecodeSense(Hex("70 00 05 00"))->code, (SenseCode{0x5, 0, 0}));
    // The length says that there is no additional sense code.
    EXPECT_EQ(DecodeSense(Hex("70 00 05 00 00 00 00 00 FF x10"))->code, (SenseCode{0x5, 0, 0}));
    // A descriptor that reaches behind the end.
    EXPECT_FALSE(DecodeSense(Hex("72 03 11 00 00 00 00 0C 00 FF 80 00"))->information);
}

TEST(SenseTest, KnowsNoOtherFormat) {
    EXPECT_FALSE(DecodeSense({}));
    EXPECT_FALSE(DecodeSense(Hex("70 00 05")));
    EXPECT_FALSE(DecodeSense(Hex("7F 00 05 00 00 00 00 0A")));
    EXPECT_FALSE(DecodeSense(Hex("00 x18")));
}

TEST(SenseMeaningsTest, SayWhatIsWrongAndWhatTheOperatorMustDo) {
    EXPECT_EQ(SenseSentence("Drive 2 of jukebox \"Tower\"", {0x2, 0x3E, 0x01}),
              "Drive 2 of jukebox \"Tower\" has no power or is disconnected; switch it on and check its "
              "cable (sense 2/3E/01)");
    EXPECT_EQ(SenseSentence("Drive 2", {0x2, 0x05, 0x00}),
              "Drive 2 has no power or is disconnected; switch it on and check its cable (sense 2/05/00)");
    EXPECT_EQ(
        SenseSentence("Tower", {0x4, 0x3B, 0x16}),
        "Tower cannot position its mechanics; check that nothing blocks the robot, and that its picker is "
        "empty (sense 4/3B/16)");
    EXPECT_EQ(SenseSentence("/dev/sg3", {0x5, 0x3B, 0x0E}),
              "/dev/sg3 finds the source empty; look at the elements again (sense 5/3B/0E)");
    EXPECT_EQ(SenseSentence("/dev/sg3", {0x5, 0x3B, 0x0D}),
              "/dev/sg3 finds the destination full; look at the elements again (sense 5/3B/0D)");
    EXPECT_EQ(SenseSentence("/dev/sg3", {0x5, 0x21, 0x00}),
              "/dev/sg3 has no block with this address (sense 5/21/00)");
}

TEST(SenseMeaningsTest, WaitForDevicesThatAreGettingReadyOnly) {
    for (const int qualifier : {0x01, 0x04, 0x07, 0x08, 0x09, 0x0A, 0x1A}) {
        EXPECT_EQ(MeaningOf({0x2, 0x04, static_cast<uint8_t>(qualifier)}).reaction, Reaction::Wait)
            << qualifier;
    }
    for (const int qualifier : {0x00, 0x02, 0x03, 0x12, 0x55}) {
        EXPECT_EQ(MeaningOf({0x2, 0x04, static_cast<uint8_t>(qualifier)}).reaction, Reaction::Fail)
            << qualifier;
    }
    EXPECT_EQ(MeaningOf({0x2, 0x3E, 0x00}).reaction, Reaction::Wait);
    EXPECT_EQ(MeaningOf({0x2, 0x3A, 0x00}).reaction, Reaction::Fail);
}

TEST(SenseMeaningsTest, TellWhatAUnitAttentionHasChanged) {
    EXPECT_EQ(MeaningOf({0x6, 0x28, 0x00}).change, Change::Medium);
    EXPECT_EQ(MeaningOf({0x6, 0x28, 0x01}).change, Change::ImportExport);
    EXPECT_EQ(MeaningOf({0x6, 0x29, 0x00}).change, Change::Reset);
    EXPECT_EQ(MeaningOf({0x6, 0x2A, 0x01}).change, Change::Settings);
    EXPECT_EQ(MeaningOf({0x6, 0x3F, 0x0E}).change, Change::LogicalUnits);
    // One that no row names: better to look once too often.
    EXPECT_EQ(MeaningOf({0x6, 0x99, 0x00}).change, Change::Medium);
    EXPECT_EQ(MeaningOf({0x6, 0x99, 0x00}).reaction, Reaction::Repeat);
}

TEST(SenseMeaningsTest, CoverEveryCodeByItsKeyAtLeast) {
    for (unsigned key = 0; key < 16; ++key) {
        const SenseCode code{static_cast<uint8_t>(key), 0xEE, 0xEE};
        EXPECT_NE(std::string(MeaningOf(code).meaning), "") << key;
    }
}

TEST(SenseMeaningsTest, HaveNoRowThatAnEarlierOneHides) {
    const auto rows = SenseMeanings();
    for (size_t i = 0; i < rows.size(); ++i) {
        const auto ascq = static_cast<uint8_t>(rows[i].ascq == kAny ? 0xFE : rows[i].ascq);
        const SenseCode code{static_cast<uint8_t>(rows[i].key), rows[i].asc, ascq};
        EXPECT_EQ(&MeaningOf(code), &rows[i]) << SenseText(code);
    }
}

TEST(SenseMeaningsTest, ReadAsPartsOfOneSentence) {
    for (const SenseMeaning& row : SenseMeanings()) {
        for (const std::string text : {row.meaning, row.advice}) {
            EXPECT_FALSE(text.ends_with('.')) << text;
            EXPECT_FALSE(!text.empty() && text.front() >= 'A' && text.front() <= 'Z') << text;
        }
        EXPECT_EQ(row.reaction == Reaction::Repeat, row.key == 0x6) << row.meaning;
        EXPECT_EQ(row.reaction == Reaction::Repeat, row.change != Change::Nothing) << row.meaning;
    }
}

}  // namespace
}  // namespace embedded::attached
