// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <algorithm>
#include <random>

#include "tests/unit/attached/model/model_drive_fixture.h"

namespace embedded::attached {
namespace {

void PutBothEndian32(std::vector<uint8_t>& image, size_t at, uint32_t value) {
    for (size_t i = 0; i < 4; ++i) {
        image[at + i] = static_cast<uint8_t>(value >> 8 * i);
        image[at + 7 - i] = static_cast<uint8_t>(value >> 8 * i);
    }
}

// An ISO 9660 image of so many sectors: its primary volume descriptor (ECMA-119, 8.4) and the terminator.
std::vector<uint8_t> IsoImage(std::string_view label, uint32_t sectors) {
    std::vector<uint8_t> image(size_t{sectors} * 2048);
    constexpr std::string_view kIdentifier = "CD001\1";
    const size_t primary = size_t{16} * 2048;
    image[primary] = 1;
    std::ranges::copy(kIdentifier, image.begin() + static_cast<ptrdiff_t>(primary) + 1);
    std::ranges::copy(Padded(label, 32), image.begin() + static_cast<ptrdiff_t>(primary) + 40);
    PutBothEndian32(image, primary + 80, sectors);
    image[primary + 128] = 0x00;
    image[primary + 129] = 0x08;
    image[primary + 130] = 0x08;
    const size_t terminator = primary + 2048;
    image[terminator] = 0xFF;
    std::ranges::copy(kIdentifier, image.begin() + static_cast<ptrdiff_t>(terminator) + 1);
    return image;
}

std::vector<uint8_t> Noise(size_t size) {
    std::mt19937 random(1);
    std::vector<uint8_t> bytes(size);
    for (uint8_t& byte : bytes)
        byte = static_cast<uint8_t>(random() >> 8U);
    return bytes;
}

class DiscReadingTest : public ModelDriveFixture {};

struct MediumTypeCase {
    uint16_t profile;
    const char* type;
};
constexpr MediumTypeCase kMediumTypes[] = {
    {0x0008, "CD-ROM"},   {0x0009, "CD-R"},    {0x000A, "CD-RW"},   {0x0010, "DVD-ROM"},
    {0x0011, "DVD-R"},    {0x0012, "DVD-RAM"}, {0x0013, "DVD-Row"}, {0x0014, "DVD-RW"},
    {0x0015, "DVD-R DL"}, {0x001A, "DVD+RW"},  {0x001B, "DVD+R"},   {0x002B, "DVD+R DL"},
    {0x0041, "BD-R"},     {0x0043, "BD-RE"},   {0x0040, "unknown"}, {0x7777, "unknown"},
};

TEST_F(DiscReadingTest, TellsTheTypeOfAMediumByTheProfileOfTheDrive) {
    for (const auto& [profile, type] : kMediumTypes) {
        InsertOptical(profile, 1000);
        m_model.sessions = {0};
        m_model.nextWritable = 1000;
        EXPECT_EQ(MediaTypeName(Read().mediumType), type) << profile;
    }
}

TEST_F(DiscReadingTest, TellsTheTypeOfADirectAccessMediumByItsModeDataAndSize) {
    const auto type = [&](uint8_t mediumType, uint32_t blockSize, uint32_t blocks) {
        InsertDirectAccess(mediumType, blockSize, blocks);
        return MediaTypeName(Read().mediumType);
    };
    EXPECT_EQ(type(0x03, 2048, 1'000'000), "MO Rewritable");
    EXPECT_EQ(type(0x00, 512, 100'000), "MO Rewritable");
    EXPECT_EQ(type(0x02, 1024, 1'000'000), "MO Write Once");
    EXPECT_EQ(type(0x03, 8192, 3'600'000), "UDO Rewritable");
    EXPECT_EQ(type(0x02, 8192, 3'600'000), "UDO Write Once");
    EXPECT_EQ(type(0x03, 2048, 11'000'000), "PDD Rewritable");
    EXPECT_EQ(type(0x02, 2048, 11'000'000), "PDD Write Once");
    EXPECT_EQ(type(0x01, 2048, 1'000'000), "unknown");
}

TEST_F(DiscReadingTest, WaitsUntilTheDriveIsReady) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("MANUALS", 400));
    m_model.becomingReady = 5;
    EXPECT_EQ(Read().label, "MANUALS");
    EXPECT_EQ(m_waiting.GetPaused(), std::chrono::milliseconds(100 + 200 + 400 + 800 + 1600));
}

TEST_F(DiscReadingTest, TakesTheSpaceOfAnIsoFileSystemFromItsDescriptor) {
    InsertOptical(0x0010, 0);
    auto image = IsoImage("MANUALS", 400);
    image.resize(size_t{550} * 2048);
    m_model.Hold(0, image);
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.content, DiscContent::FileSystem);
    EXPECT_EQ(disc.fileSystem, "ISO 9660");
    EXPECT_EQ(disc.totalBytes, 400U * 2048);
    EXPECT_EQ(disc.usedBytes, 400U * 2048);
    EXPECT_EQ(disc.finalization, Finalization::Closed);
}

TEST_F(DiscReadingTest, ReadsTheLastSessionOfADiscWithSeveral) {
    InsertOptical(0x0011, 2'295'104);
    m_model.Hold(0, IsoImage("FIRST", 400));
    m_model.Hold(14'000, IsoImage("SECOND", 500));
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.label, "SECOND");
    EXPECT_TRUE(disc.isAppendable);
    EXPECT_TRUE(disc.isSequential);
    EXPECT_EQ(disc.finalization, Finalization::NotFinalized);
    EXPECT_EQ(disc.usedBytes, 14'500U * 2048);
    EXPECT_EQ(disc.totalBytes, uint64_t{2'295'104} * 2048);
}

TEST_F(DiscReadingTest, FindsADiscBlankThatTheDriveCallsEmpty) {
    InsertOptical(0x0014, 2'295'104);
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.content, DiscContent::Blank);
    EXPECT_EQ(disc.totalBytes, uint64_t{2'295'104} * 2048);
    EXPECT_EQ(disc.usedBytes, 0U);
    EXPECT_FALSE(disc.isAppendable);
}

TEST_F(DiscReadingTest, FindsAnUnformattedMediumBlank) {
    InsertOptical(0x0043, 12'219'392);
    m_model.isFormatted = false;
    m_model.formats = {0x30};
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.content, DiscContent::Blank);
    EXPECT_EQ(disc.totalBytes, uint64_t{12'219'392} * 2048);
}

TEST_F(DiscReadingTest, FindsAWriteOnceMediumBlankWhoseBlocksWereNeverWritten) {
    InsertDirectAccess(0x02, 1024, 1'000'000);
    EXPECT_EQ(Read().content, DiscContent::Blank);
}

TEST_F(DiscReadingTest, FindsAnAudioDisc) {
    InsertOptical(0x0008, 0);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 300));
    m_model.isAudio = true;
    EXPECT_EQ(Read().content, DiscContent::Audio);
}

TEST_F(DiscReadingTest, DoesNotTakeADvdForMusic) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("FILM", 400));
    m_model.isAudio = true;
    EXPECT_EQ(Read().content, DiscContent::FileSystem);
}

TEST_F(DiscReadingTest, FindsADiscDamagedWhoseFirstBlocksCannotBeRead) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("LOST", 400));
    m_model.unreadable = {16, 17, 18, 19, 20, 21, 22, 23};
    EXPECT_EQ(Read().content, DiscContent::Damaged);
}

TEST_F(DiscReadingTest, ReadsAroundABadBlock) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("SCRATCHED", 400));
    m_model.unreadable = {300};
    EXPECT_EQ(Read().label, "SCRATCHED");
}

TEST_F(DiscReadingTest, FindsADiscDamagedWhoseWritingWasBrokenOff) {
    InsertOptical(0x0011, 2'295'104);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 32, 0x41));
    m_model.isDamaged = true;
    EXPECT_EQ(Read().content, DiscContent::Damaged);
}

TEST_F(DiscReadingTest, FindsADiscDamagedThatTheDriveCannotMakeOut) {
    m_model.failures[0x00] = {0x2, 0x30, 0x00};
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.content, DiscContent::Damaged);
    EXPECT_EQ(disc.mediumType, kUnknownMedium);
}

TEST_F(DiscReadingTest, FindsACopyProtectedDiscEncrypted) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("FILM", 400));
    m_model.isCopyProtected = true;
    EXPECT_EQ(Read().content, DiscContent::Encrypted);
}

TEST_F(DiscReadingTest, FindsAnEncryptedContainer) {
    InsertDirectAccess(0x03, 512, 32'768);
    // The header of a LUKS container, version 1.
    std::vector<uint8_t> header(4096);
    std::ranges::copy(Hex("4C 55 4B 53 BA BE 00 01"), header.begin());
    std::ranges::copy(std::string_view("2f8d3c62-6f5e-4f0e-9d4e-0a1b2c3d4e5f"), header.begin() + 168);
    m_model.Hold(0, header);
    EXPECT_EQ(Read().content, DiscContent::Encrypted);
}

TEST_F(DiscReadingTest, FindsNoiseEncryptedAndOtherDataWithoutAFileSystem) {
    InsertDirectAccess(0x03, 2048, 100'000);
    m_model.Hold(0, Noise(size_t{2048} * 100));
    EXPECT_EQ(Read().content, DiscContent::Encrypted);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 100, 0x41));
    EXPECT_EQ(Read().content, DiscContent::NoFileSystem);
}

TEST_F(DiscReadingTest, SeesThatAMediumIsProtectedAgainstWriting) {
    InsertDirectAccess(0x03, 2048, 100'000);
    EXPECT_TRUE(Read().isWritable);
    m_model.isWriteProtected = true;
    EXPECT_FALSE(Read().isWritable);
}

TEST_F(DiscReadingTest, KeepsTheBytesOfALabelAsTheyAre) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("\033[31mRED", 400));
    EXPECT_EQ(Read().label, "\033[31mRED");
}

TEST_F(DiscReadingTest, DoesNotBelieveBlocksThatNoDiscHas) {
    InsertOptical(0x0010, 0);
    m_model.lies[0x25] = Hex("00 00 01 8F 00 00 00 03");
    const auto disc = ReadDisc(m_device);
    ASSERT_FALSE(disc);
    EXPECT_EQ(disc.GetError().kind, ErrorKind::BadAnswer);
    EXPECT_EQ(disc.GetError().text, "Drive 2 names blocks of 3 bytes, which no disc has");
}

TEST_F(DiscReadingTest, DoesNotBelieveAnAnswerThatEndsTooEarly) {
    InsertOptical(0x0011, 2'295'104);
    m_model.lies[0x51] = Hex("00 20 0E 01");
    EXPECT_EQ(ReadDisc(m_device).GetError().text,
              "Drive 2: the answer to READ DISC INFORMATION ends too early, after 4 bytes");
}

TEST_F(DiscReadingTest, DoesNotTakePartsOfBlocks) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("SHORT", 400));
    m_model.lies[0x28] = std::vector<uint8_t>(1000);
    EXPECT_EQ(ReadDisc(m_device).GetError().text, "Drive 2 reads only a part of a block");
}

TEST_F(DiscReadingTest, CopesWithADriveThatNamesMoreBlocksThanItHas) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("SMALL", 400));
    m_model.lies[0x25] = Hex("FF FF FF FE 00 00 08 00");
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.content, DiscContent::FileSystem);
    EXPECT_EQ(disc.label, "SMALL");
}

TEST_F(DiscReadingTest, TellsAFaultOfTheDriveAsAnError) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, IsoImage("FINE", 400));
    m_model.failures[0x28] = {0x4, 0x44, 0x00};
    EXPECT_EQ(ReadDisc(m_device).GetError().sense, (SenseCode{0x4, 0x44, 0x00}));
}

TEST_F(DiscReadingTest, TellsThatADeviceIsNoDrive) {
    m_model.type = DeviceType::Changer;
    EXPECT_EQ(ReadDisc(m_device).GetError().text, "Drive 2 is no drive for discs");
}

TEST_F(DiscReadingTest, ListsWhatADriveCanWrite) {
    m_model.profile = 0x0043;
    EXPECT_EQ(*ReadWritableTypes(m_device), std::vector<uint32_t>{26});
    m_model.profile = 0x0010;
    EXPECT_EQ(*ReadWritableTypes(m_device), std::vector<uint32_t>());
    m_model.type = DeviceType::OpticalMemory;
    EXPECT_EQ(*ReadWritableTypes(m_device), (std::vector<uint32_t>{20, 21, 22, 23, 24, 25}));
}

}  // namespace
}  // namespace embedded::attached
