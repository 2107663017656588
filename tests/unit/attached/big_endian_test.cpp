// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include "embedded/attached/base/big_endian.h"

#include <gtest/gtest.h>

#include "embedded/attached/base/device_text.h"
#include "tests/unit/attached/hex.h"

namespace embedded::attached {
namespace {

TEST(BigEndianReaderTest, ReadsNumbersMostSignificantByteFirst) {
    const auto bytes = Hex("01 02 03 04 05 06 07 08");
    BigEndianReader reader(bytes);
    EXPECT_EQ(reader.Get8(1), 0x02);
    EXPECT_EQ(reader.Get16(1), 0x0203);
    EXPECT_EQ(reader.Get24(1), 0x020304U);
    EXPECT_EQ(reader.Get32(4), 0x05060708U);
    EXPECT_EQ(reader.Get64(0), 0x0102030405060708U);
    EXPECT_TRUE(reader.IsComplete());
}

TEST(BigEndianReaderTest, NumbersBitsFromTheLeastSignificant) {
    const auto bytes = Hex("A5");  // 1010 0101
    BigEndianReader reader(bytes);
    EXPECT_TRUE(reader.GetBit(0, 0));
    EXPECT_FALSE(reader.GetBit(0, 1));
    EXPECT_TRUE(reader.GetBit(0, 7));
    EXPECT_EQ(reader.GetBits(0, 6, 4), 0b010);
    EXPECT_EQ(reader.GetBits(0, 7, 0), 0xA5);
}

TEST(BigEndianReaderTest, ReadsZeroBehindTheEndAndRemembersIt) {
    const auto bytes = Hex("FF FF FF");
    for (const size_t at : {size_t{2}, size_t{3}, size_t{1000}, SIZE_MAX}) {
        BigEndianReader reader(bytes);
        EXPECT_EQ(reader.Get16(at), 0) << at;
        EXPECT_FALSE(reader.IsComplete()) << at;
    }
}

TEST(BigEndianReaderTest, GivesTheBytesThatThereAre) {
    const auto bytes = Hex("01 02 03");
    BigEndianReader reader(bytes);
    EXPECT_EQ(reader.GetBytes(1, 2).size(), 2U);
    EXPECT_TRUE(reader.IsComplete());
    EXPECT_EQ(reader.GetBytes(1, 5).size(), 2U);
    EXPECT_TRUE(reader.GetBytes(7, 1).empty());
    EXPECT_FALSE(reader.IsComplete());
}

TEST(BigEndianReaderTest, TakesBlanksAndNulsOffBothEndsOfText) {
    const auto bytes = Hex("20 00 41 20 42 00 20");
    BigEndianReader reader(bytes);
    EXPECT_EQ(reader.GetText(0, 7), "A B");
    EXPECT_EQ(reader.GetText(0, 2), "");
}

TEST(BigEndianWriterTest, WritesNumbersMostSignificantByteFirst) {
    std::vector<uint8_t> bytes(18);
    BigEndianWriter writer(bytes);
    writer.Put8(0, 0x01);
    writer.Put16(1, 0x0203);
    writer.Put24(3, 0x040506);
    writer.Put32(6, 0x0708090A);
    writer.Put64(10, 0x0B0C0D0E0F101112);
    EXPECT_EQ(bytes, Hex("01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12"));
    EXPECT_TRUE(writer.IsComplete());
}

TEST(BigEndianWriterTest, WritesNothingThatDoesNotFitWhole) {
    std::vector<uint8_t> bytes(3);
    BigEndianWriter writer(bytes);
    writer.Put16(2, 0xFFFF);
    writer.Put32(SIZE_MAX, 0xFFFFFFFF);
    EXPECT_EQ(bytes, Hex("00 00 00"));
    EXPECT_FALSE(writer.IsComplete());
}

TEST(DeviceTextTest, ShowsAnythingButPrintableAsciiAsAQuestionMark) {
    EXPECT_EQ(Printable("A\033[31m \x7F\xC3\xA4~"), "A?[31m ???~");
    EXPECT_EQ(HexText(0x3, 2), "03h");
    EXPECT_EQ(HexText(0x3F, 2), "3Fh");
}

}  // namespace
}  // namespace embedded::attached
