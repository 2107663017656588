// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "embedded/attached/disc/block_writing.h"
#include "embedded/attached/disc/empty_udf.h"
#include "embedded/attached/disc/noise.h"
#include "embedded/attached/disc/run_program.h"
#include "embedded/attached/disc/udf_volume.h"
#include "embedded/attached/scsi/write_parameters.h"
#include "tests/unit/attached/refusal.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;

TEST(SparseFileTest, HoldsOnlyWhatWasWritten) {
    auto file = SparseFile::Create(uint64_t{1} << 34U);
    ASSERT_TRUE(file);
    EXPECT_EQ(*file->GetSize(), uint64_t{1} << 34U);
    const std::vector<uint8_t> bytes(4096, 7);
    ASSERT_TRUE(file->Write(8192, bytes));
    ASSERT_TRUE(file->Write(uint64_t{1} << 33U, bytes));
    EXPECT_EQ(*file->ListWritten(), (std::vector<SparseFile::Extent>{
                                        {8192, 12288}, {uint64_t{1} << 33U, (uint64_t{1} << 33U) + 4096}}));
    std::vector<uint8_t> read(8192, 9);
    ASSERT_TRUE(file->Read(8192, read));
    EXPECT_TRUE(std::ranges::all_of(read.begin(), read.begin() + 4096, [](uint8_t b) { return b == 7; }));
    EXPECT_TRUE(std::ranges::all_of(read.begin() + 4096, read.end(), [](uint8_t b) { return b == 0; }));
}

TEST(SparseFileTest, ReadsAsZerosBehindItsEnd) {
    auto file = SparseFile::Create(2);
    ASSERT_TRUE(file->Write(0, Hex("01 02")));
    std::vector<uint8_t> read(4, 9);
    ASSERT_TRUE(file->Read(0, read));
    EXPECT_EQ(read, Hex("01 02 00 00"));
}

TEST(RunsOfTest, CoversExtentsByWholeClustersOnce) {
    // Clusters of 32 blocks: the first extent touches blocks 16 to 40, the second 50 to 51, the last is cut
    // at the end of the disc.
    EXPECT_EQ(RunsOf({{16 * 2048, 40 * 2048}, {50 * 2048, 51 * 2048}, {320 * 2048, 400 * 2048}}, 330, 2048),
              (std::vector<BlockRun>{{0, 32}, {32, 32}, {320, 10}}));
    EXPECT_EQ(RunsOf({{0, 600}}, 1000, 512), (std::vector<BlockRun>{{0, 128}}));
    EXPECT_EQ(RunsOf({}, 1000, 512), std::vector<BlockRun>());
}

TEST(RunProgramTest, PassesWordsAsTheyAreAndCollectsOutput) {
    const auto end = RunProgram("/bin/sh", {"-c", "printf '%s.' \"$@\"; exit 5", "sh", "$HOME; a\"b", "*"}, 0,
                                milliseconds(30'000));
    ASSERT_TRUE(end) << end.GetError().text;
    EXPECT_EQ(end->status, 5);
    EXPECT_EQ(end->output, "$HOME; a\"b.*.");
}

TEST(RunProgramTest, KeepsTheFirst64KiBOfOutput) {
    const auto end = RunProgram("/bin/sh", {"-c", "yes | head -c 65535; printf abcde; yes | head -c 200000"},
                                0, milliseconds(30'000));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 0);
    ASSERT_EQ(end->output.size(), 65536U);
    EXPECT_EQ(end->output.back(), 'a');
}

TEST(RunProgramTest, PassesOneFileAndNoOther) {
    auto file = SparseFile::Create(0);
    const auto end = RunProgram("/bin/sh", {"-c", "echo hello >&3; cd /proc/self/fd && echo *"},
                                file->GetDescriptor(), milliseconds(30'000));
    ASSERT_TRUE(end);
    // A shell may have a descriptor of its own for the folder that it lists.
    EXPECT_TRUE(end->output.starts_with("0 1 2 3")) << end->output;
    EXPECT_EQ(*file->GetSize(), 6U);
}

TEST(RunProgramTest, EndsAProgramThatTakesTooLong) {
    const auto end = RunProgram("/bin/sleep", {"60"}, 0, milliseconds(50));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->status, 128 + 9);
}

TEST(RunProgramTest, TellsThatThereIsNoSuchProgram) {
    const auto end = RunProgram("/no/such/program", {}, 0, milliseconds(1'000));
    ASSERT_FALSE(end);
    EXPECT_EQ(end.GetError().text, "/no/such/program cannot be run: No such file or directory");
}

Medium MediumOf(uint16_t profile, uint64_t blocks) {
    Medium medium;
    medium.profile = FindProfile(profile);
    medium.recording = medium.profile->recording;
    medium.blockSize = 2048;
    medium.blocks = blocks;
    return medium;
}

TEST(UdfArgumentsTest, SuitTheMedium) {
    const auto arguments = [](uint16_t profile, bool hasVirtualAllocationTable) {
        return UdfArguments(MediumOf(profile, 1000), {"A B", "1.50", hasVirtualAllocationTable});
    };
    using Words = std::vector<std::string>;
    EXPECT_EQ(arguments(0x0009, true), (Words{"--utf8", "--label=A B", "--blocksize=2048", "--media-type=cdr",
                                              "--udfrev=1.50", "/proc/self/fd/3", "1000"}));
    EXPECT_EQ(arguments(0x0011, true)[3], "--media-type=dvdr");
    EXPECT_EQ(arguments(0x0012, false)[3], "--media-type=dvdram");
    EXPECT_EQ(arguments(0x001A, false)[3], "--media-type=dvdrw");
    EXPECT_EQ(arguments(0x0043, false)[3], "--media-type=hd");
    EXPECT_EQ(arguments(0x0043, true),
              (Words{"--utf8", "--label=A B", "--blocksize=2048", "--media-type=hd", "--udfrev=1.50",
                     "--bootarea=erase", "--vat", "--minblocks=1000", "/proc/self/fd/3", "1000"}));
}

TEST(MakeEmptyUdfTest, EndsWithTheLastBlockToBeWrittenInOrder) {
    const auto file = MakeEmptyUdf(MediumOf(0x0011, 2'295'104), {"A", "1.50", true});
    ASSERT_TRUE(file) << file.GetError().text;
    EXPECT_EQ(*file->GetSize(), 288U * 2048);
}

TEST(LooksLikeNoiseTest, TellsNoiseFromWhatIsTooEvenOrTooUneven) {
    std::mt19937 random(7);
    std::vector<uint8_t> noise(65536);
    for (uint8_t& byte : noise)
        byte = static_cast<uint8_t>(random() >> 8U);
    EXPECT_TRUE(LooksLikeNoise(noise));
    EXPECT_FALSE(LooksLikeNoise(Bytes(noise).first(16383)));
    std::vector<uint8_t> even(65536);
    for (size_t i = 0; i < even.size(); ++i)
        even[i] = static_cast<uint8_t>(i);
    EXPECT_FALSE(LooksLikeNoise(even));
    // A little more of one value, as in compressed data with headers.
    std::fill_n(noise.begin(), 1000, uint8_t{0});
    EXPECT_FALSE(LooksLikeNoise(noise));
}

// A UDF volume by its descriptors (ECMA-167): anchor in block 256, volume descriptors in 32 to 47, integrity
// descriptors in 64 and 65.
class UdfVolumeTest : public testing::Test {
  protected:
    static constexpr uint32_t kBlock = 2048;

    UdfVolumeTest() {
        Put32(256, 16, 16 * kBlock);
        Put32(256, 20, 32);
        SetTag(256, 2);
        Put32(33, 212, kBlock);
        Put32(33, 432, 2 * kBlock);
        Put32(33, 436, 64);
        SetTag(33, 6);
        SetTag(34, 8);
        SetSpace(64, {{7668, 7672}});
    }

    uint8_t& At(uint32_t block, size_t at) { return m_image[block * size_t{kBlock} + at]; }

    void Put32(uint32_t block, size_t at, uint32_t value) {
        for (size_t i = 0; i < 4; ++i)
            At(block, at + i) = static_cast<uint8_t>(value >> 8 * i);
    }

    // Identifier, location, and a checksum that makes the tag valid.
    void SetTag(uint32_t block, uint8_t identifier) {
        At(block, 0) = identifier;
        Put32(block, 12, block);
        unsigned sum = 0;
        for (size_t at = 0; at < 16; ++at)
            sum += at == 4 ? 0U : At(block, at);
        At(block, 4) = static_cast<uint8_t>(sum);
    }

    // Free and all blocks of each partition.
    void SetSpace(uint32_t block, const std::vector<std::pair<uint32_t, uint32_t>>& partitions) {
        const auto count = static_cast<uint32_t>(partitions.size());
        Put32(block, 72, count);
        for (uint32_t i = 0; i < count; ++i) {
            Put32(block, 80 + 4 * i, partitions[i].first);
            Put32(block, 80 + 4 * (count + i), partitions[i].second);
        }
        SetTag(block, 9);
    }

    void AddVirtualPartition() {
        Put32(33, 264, 6 + 64);
        At(33, 440) = 1;
        At(33, 441) = 6;
        At(33, 446) = 2;
        At(33, 447) = 64;
        std::ranges::copy(std::string_view("*UDF Virtual Partition"), &At(33, 446 + 5));
    }

    std::optional<UdfVolume> Read(uint32_t blockSize = kBlock, uint64_t start = 0) {
        const ByteSource source = [this](uint64_t at, size_t length) {
            std::vector<uint8_t> bytes(length);
            if (at <= m_image.size() && length <= m_image.size() - at)
                std::copy_n(m_image.begin() + static_cast<ptrdiff_t>(at), length, bytes.begin());
            return bytes;
        };
        return ReadUdfVolume(source, start, blockSize);
    }

    std::vector<uint8_t> m_image = std::vector<uint8_t>(size_t{300} * kBlock);
};

TEST_F(UdfVolumeTest, TakesItsSpaceFromTheIntegrityDescriptor) {
    const auto volume = Read();
    ASSERT_TRUE(volume);
    EXPECT_EQ(volume->totalBytes, 7672U * 2048);
    EXPECT_EQ(volume->freeBytes, 7668U * 2048);
    EXPECT_FALSE(volume->hasVirtualAllocationTable);
}

TEST_F(UdfVolumeTest, TakesTheLastIntegrityDescriptor) {
    SetSpace(65, {{1000, 7672}});
    EXPECT_EQ(Read()->freeBytes, 1000U * 2048);
}

TEST_F(UdfVolumeTest, FindsAVirtualPartitionBehindAnother) {
    AddVirtualPartition();
    EXPECT_TRUE(Read()->hasVirtualAllocationTable);
}

TEST_F(UdfVolumeTest, AddsUpPartitionsAndLeavesOutWhatIsNotTold) {
    SetSpace(64, {{10, 20}, {0xFFFFFFFF, 0xFFFFFFFF}, {1, 5}});
    EXPECT_EQ(Read()->totalBytes, 25U * 2048);
    EXPECT_EQ(Read()->freeBytes, 11U * 2048);
}

TEST_F(UdfVolumeTest, NeverHasMoreFreeThanThereIs) {
    SetSpace(64, {{500, 20}});
    EXPECT_EQ(Read()->freeBytes, 20U * 2048);
}

TEST_F(UdfVolumeTest, IsFoundOnAMediumWithSmallerBlocks) {
    EXPECT_EQ(Read(512)->totalBytes, 7672U * 2048);
}

TEST_F(UdfVolumeTest, UsesTheReserveOfTheVolumeDescriptors) {
    Put32(256, 20, 200);
    Put32(256, 24, 16 * kBlock);
    Put32(256, 28, 32);
    SetTag(256, 2);
    EXPECT_TRUE(Read());
}

TEST_F(UdfVolumeTest, IsNoneWithoutAValidAnchor) {
    At(256, 5) ^= 1;
    EXPECT_FALSE(Read());
}

TEST_F(UdfVolumeTest, TellsNoSpaceForMorePartitionsThanADescriptorHoldsOf) {
    for (const uint32_t count : {250U, 0x20000000U, 0xFFFFFFFFU}) {
        Put32(64, 72, count);
        EXPECT_EQ(Read()->totalBytes, 0U);
    }
}

TEST_F(UdfVolumeTest, EndsWithMapsThatEndNowhere) {
    AddVirtualPartition();
    At(33, 441) = 0;
    EXPECT_FALSE(Read()->hasVirtualAllocationTable);
    At(33, 441) = 255;
    Put32(33, 264, 0xFFFFFFFF);
    EXPECT_FALSE(Read()->hasVirtualAllocationTable);
}

TEST_F(UdfVolumeTest, CopesWithExtentsBehindTheEnd) {
    Put32(33, 432, 0xFFFFFFFF);
    Put32(33, 436, 0xFFFFFFFF);
    EXPECT_EQ(Read()->totalBytes, 0U);
}

TEST(WriteParametersTest, ChangesThePageOfTheDriveForDvd) {
    auto page = Hex("85 32 01 00 x49");
    page[48] = 0x77;
    const auto list = WriteParameters(page, WriteType::Incremental, NextSession::No);
    ASSERT_TRUE(list);
    // A header of zeros; PS cleared; buffer under-run free and link size valid; one session, fixed packets,
    // data of packets; mode 1; link size and packet size of 16. The rest is the drive's.
    EXPECT_EQ(*list, Hex("00 x8 05 32 60 25 08 10 00 00 00 00 00 00 00 10 00 x34 77 00 00 00"));
}

TEST(WriteParametersTest, RefusesAPageThatIsTooShort) {
    EXPECT_EQ(Refusal(WriteParameters(Hex("05 02 00 00"), WriteType::TrackAtOnce, NextSession::Yes)),
              "mode page 05h is too short, it has 4 bytes");
}

TEST(ModeSelect10Test, SendsPagesInTheFormatOfTheStandard) {
    const Cdb cdb = ModeSelect10(60);
    EXPECT_EQ(std::vector(cdb.GetBytes().begin(), cdb.GetBytes().end()),
              Hex("55 10 00 00 00 00 00 00 3C 00"));
}

}  // namespace
}  // namespace embedded::attached
