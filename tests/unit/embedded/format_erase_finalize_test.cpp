// Format, erase and finalize: which media they take, what they leave, and what they refuse.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

constexpr uint32_t kBlank = 4;
constexpr uint32_t kFileSystem = 6;
constexpr uint32_t kNotFinalized = 1;
constexpr uint32_t kClosed = 3;

class FormatEraseFinalize : public FarmFixture {
  protected:
    Client m_client;
};

// ---- Format

TEST_F(FormatEraseFinalize, FormatKeepsIdAndDirectoryAndTakesTheLabel) {
    ASSERT_TRUE(m_client.Format({8, 0, 2}, 0, "Sales 2005").ok);
    EXPECT_EQ(m_client.SideOf({8, 0, 2}, 0).volumeId, 33);
    const VolumeRecord volume = m_client.VolumeOf(33);
    EXPECT_STREQ(volume.label, "Sales 2005");
    EXPECT_STREQ(volume.fileSystem, "UDF 2.01");
    EXPECT_EQ(volume.totalCapacity, 4'700'000'000U) << "a side of a DVD-RAM";
    EXPECT_EQ(volume.freeCapacity, 4'700'000'000U);
    std::vector<std::string> aspects;
    ASSERT_TRUE(m_client.Aspects(33, aspects).ok);
    EXPECT_EQ(aspects, (std::vector<std::string>{"sales\\2004"}));
}

TEST_F(FormatEraseFinalize, FormatWithoutALabelKeepsTheOldOne) {
    ASSERT_TRUE(m_client.Format({8, 0, 2}, 0).ok);
    EXPECT_EQ(m_client.LabelOf(33), "Sales 2004");
}

TEST_F(FormatEraseFinalize, LabelOf255BytesIsKeptWhole) {
    const std::string label(255, 'L');
    ASSERT_TRUE(m_client.Format({8, 0, 2}, 0, label).ok);
    EXPECT_EQ(m_client.LabelOf(33), label);
}

TEST_F(FormatEraseFinalize, FormatOfABlankSideMakesAVolumeWithANewId) {
    ASSERT_TRUE(m_client.Format({11, 0, 9}, 0, "Fresh").ok);  // DVD-RAM WO
    const SideRecord side = m_client.SideOf({11, 0, 9}, 0);
    EXPECT_EQ(side.state, kFileSystem);
    EXPECT_EQ(side.finalization, kNotFinalized);
    EXPECT_EQ(side.volumeId, 600);
    const VolumeRecord volume = m_client.VolumeOf(600);
    EXPECT_STREQ(volume.label, "Fresh");
    EXPECT_EQ(volume.type, 0U);
    EXPECT_EQ(volume.state, 0U);
    std::vector<std::string> aspects;
    ASSERT_TRUE(m_client.Aspects(600, aspects).ok);
    EXPECT_TRUE(aspects.empty());
    ASSERT_TRUE(m_client.Format({8, 0, 11}, 0).ok);
    EXPECT_EQ(m_client.SideOf({8, 0, 11}, 0).volumeId, 601);
}

struct FileSystemCase {
    const char* medium;
    Slot slot;
    int32_t side;
    bool sequential;
    const char* fileSystem;
    uint64_t capacity;
};

TEST_F(FormatEraseFinalize, FileSystemAndCapacityFollowTheMedium) {
    const std::vector<FileSystemCase> cases = {
        {"DVD-RAM", {8, 0, 2}, 0, false, "UDF 2.01", 4'700'000'000},
        {"DVD-RAM, sequential", {8, 0, 2}, 1, true, "UDF 1.50 seq", 4'700'000'000},
        {"CD-RW", {11, 0, 10}, 0, false, "UDF 1.50 seq", 737'280'000},
        {"DVD-RAM WO", {11, 0, 9}, 0, false, "UDF 1.50 seq", 4'700'000'000},
        {"UDO Write Once", {11, 2, 9}, 0, false, "UDF 1.50 seq", 30'000'000'000},
        {"MO Rewritable", {31, 1, 2}, 0, false, "UDF 2.01", 4'600'000'000},
        {"BD-RE", {14, 0, 3}, 0, false, "UDF 2.01", 25'000'000'000},
        {"DVD-Row", {11, 0, 7}, 0, false, "UDF 2.01", 4'700'000'000},
        {"DVD+R DL", {8, 0, 11}, 0, false, "UDF 1.50 seq", 8'540'000'000},
    };
    for (const FileSystemCase& expected : cases) {
        const Outcome outcome = m_client.Format(expected.slot, expected.side, "", expected.sequential);
        ASSERT_TRUE(outcome.ok) << expected.medium << ": " << Describe(outcome);
        const SideRecord side = m_client.SideOf(expected.slot, expected.side);
        const VolumeRecord volume = m_client.VolumeOf(static_cast<uint32_t>(side.volumeId));
        EXPECT_STREQ(volume.fileSystem, expected.fileSystem) << expected.medium;
        EXPECT_EQ(volume.totalCapacity, expected.capacity) << expected.medium;
        EXPECT_EQ(volume.freeCapacity, expected.capacity) << expected.medium;
    }
}

struct RefusedRecording {
    const char* what;
    Slot slot;
    int32_t side;
    const char* expected;
};

TEST_F(FormatEraseFinalize, FormatIsRefusedWithTheReason) {
    const std::vector<RefusedRecording> cases = {
        {"read-only",
         {8, 0, 8},
         0,
         "1201: The CD-ROM medium in slot 9 of magazine 1 in jukebox \"MyBox\" is read-only."},
        {"finalized",
         {8, 0, 9},
         0,
         "1202: Side A of the medium in slot 10 of magazine 1 in jukebox \"MyBox\" is finalized."},
        {"closed",
         {11, 0, 4},
         0,
         "1203: Side A of the medium in slot 5 of magazine 1 in jukebox \"Archive Tower\" is closed."},
        {"recorded",
         {11, 0, 3},
         0,
         "1204: Side A of the medium in slot 4 of magazine 1 in jukebox \"Archive Tower\" is on a write-once "
         "medium and "
         "is already recorded."},
        {"bad",
         {8, 0, 3},
         1,
         "3: Side B of the medium in slot 4 of magazine 1 in jukebox \"MyBox\" cannot be read."},
        {"part of a set",
         {11, 1, 4},
         0,
         "1207: Side A of the medium in slot 5 of magazine 2 in jukebox \"Archive Tower\" is part of volume "
         "300, which "
         "lies on several sides."},
        {"part of a mirror",
         {29, 0, 0},
         0,
         "1207: Side A of the medium in slot 1 of magazine 1 in jukebox \"Sales Tower\" is part of volume "
         "310, which "
         "lies on several sides."},
        {"no side B",
         {8, 0, 8},
         1,
         "1106: The medium in slot 9 of magazine 1 in jukebox \"MyBox\" has no side B."},
        {"both sides",
         {8, 0, 2},
         2,
         "1106: The medium in slot 3 of magazine 1 in jukebox \"MyBox\" has no side 2."},
        {"empty slot", {8, 0, 4}, 0, "501: There is no medium in slot 5 of magazine 1 in jukebox \"MyBox\"."},
        {"missing magazine", {11, 3, 0}, 0, "502: Magazine 4 of jukebox \"Archive Tower\" is not present."},
        {"disabled", {41, 0, 0}, 0, "1200: Jukebox \"Retired\" is disabled, its media cannot be moved."},
    };
    for (const RefusedRecording& refused : cases) {
        EXPECT_EQ(Describe(m_client.Format(refused.slot, refused.side)), refused.expected) << refused.what;
    }
}

TEST_F(FormatEraseFinalize, FormatReadsAMediumThatWasNotRead) {
    ASSERT_TRUE(m_client.Format({8, 0, 6}, 0, "Read now").ok);
    EXPECT_EQ(m_client.SlotState({8, 0, 6}), 4U);
    EXPECT_EQ(m_client.LabelOf(6), "Read now");
}

// ---- Erase

TEST_F(FormatEraseFinalize, EraseBlanksTheSideAndRemovesTheVolume) {
    ASSERT_TRUE(m_client.Erase({8, 0, 2}, 0).ok);
    const SideRecord side = m_client.SideOf({8, 0, 2}, 0);
    EXPECT_EQ(side.state, kBlank);
    EXPECT_EQ(side.volumeId, 0);
    VolumeRecord volume{};
    EXPECT_EQ(Describe(m_client.Volume(33, volume)), "1105: There is no volume with ID 33.");
    EXPECT_EQ(m_client.SideOf({8, 0, 2}, 1).volumeId, 34) << "the other side is untouched";
    EXPECT_TRUE(m_client.SetDirectory(34, "sales\\2004").ok) << "the directory name is free again";
}

TEST_F(FormatEraseFinalize, EraseOfBothSidesBlanksTheWholeMedium) {
    ASSERT_TRUE(m_client.Erase({8, 0, 2}, 2).ok);
    for (int32_t side = 0; side < 2; ++side)
        EXPECT_EQ(m_client.SideOf({8, 0, 2}, side).state, kBlank);
    VolumeRecord volume{};
    EXPECT_EQ(m_client.Volume(34, volume).code, 1105);
}

TEST_F(FormatEraseFinalize, EraseOfABlankSideSucceeds) {
    EXPECT_TRUE(m_client.Erase({11, 0, 10}, 0).ok);
}

TEST_F(FormatEraseFinalize, IdOfAnErasedVolumeIsNotGivenAgain) {
    ASSERT_TRUE(m_client.Format({11, 0, 10}, 0).ok);
    ASSERT_TRUE(m_client.Erase({11, 0, 10}, 0).ok);
    ASSERT_TRUE(m_client.Format({11, 0, 10}, 0).ok);
    EXPECT_EQ(m_client.SideOf({11, 0, 10}, 0).volumeId, 601);
}

TEST_F(FormatEraseFinalize, EraseIsRefusedWithTheReason) {
    const std::vector<RefusedRecording> cases = {
        {"write once",
         {8, 0, 1},
         0,
         "1205: The MO Write Once medium in slot 2 of magazine 1 in jukebox \"MyBox\" is not rewritable."},
        {"read-only",
         {8, 0, 8},
         0,
         "1205: The CD-ROM medium in slot 9 of magazine 1 in jukebox \"MyBox\" is not rewritable."},
        {"bad",
         {8, 0, 3},
         1,
         "3: Side B of the medium in slot 4 of magazine 1 in jukebox \"MyBox\" cannot be read."},
        {"one of two bad",
         {8, 0, 3},
         2,
         "3: Side B of the medium in slot 4 of magazine 1 in jukebox \"MyBox\" cannot be read."},
        {"part of a set",
         {11, 1, 4},
         0,
         "1207: Side A of the medium in slot 5 of magazine 2 in jukebox \"Archive Tower\" is part of volume "
         "300, which "
         "lies on several sides."},
        {"no side B",
         {14, 0, 1},
         1,
         "1106: The medium in slot 2 of magazine 1 in jukebox \"My Box\" has no side B."},
        {"no such side",
         {8, 0, 2},
         3,
         "1106: The medium in slot 3 of magazine 1 in jukebox \"MyBox\" has no side 3."},
        {"empty slot", {8, 0, 4}, 0, "501: There is no medium in slot 5 of magazine 1 in jukebox \"MyBox\"."},
        {"disabled", {41, 0, 0}, 0, "1200: Jukebox \"Retired\" is disabled, its media cannot be moved."},
    };
    for (const RefusedRecording& refused : cases) {
        EXPECT_EQ(Describe(m_client.Erase(refused.slot, refused.side)), refused.expected) << refused.what;
    }
    EXPECT_EQ(m_client.LabelOf(5), "100%s %n") << "a refused erase of both sides leaves the good one alone";
}

// ---- Finalize

TEST_F(FormatEraseFinalize, FinalizeClosesASequentialMedium) {
    ASSERT_TRUE(m_client.Finalize({29, 1, 0}).ok);
    EXPECT_EQ(m_client.SideOf({29, 1, 0}, 0).finalization, kClosed);
    EXPECT_EQ(m_client.Format({29, 1, 0}, 0).code, 1203);
    EXPECT_TRUE(m_client.Finalize({29, 1, 0}).ok) << "it is closed already";
}

TEST_F(FormatEraseFinalize, FinalizeClosesTheRecordedSideOfAHalfBlankMedium) {
    ASSERT_TRUE(m_client.Finalize({8, 0, 1}).ok);
    EXPECT_EQ(m_client.SideOf({8, 0, 1}, 0).finalization, kClosed);
    EXPECT_EQ(m_client.SideOf({8, 0, 1}, 1).finalization, kNotFinalized);
}

TEST_F(FormatEraseFinalize, FinalizeTakesARandomAccessMediumThatWasFormattedSequentially) {
    EXPECT_EQ(m_client.Finalize({8, 0, 2}).code, 1206);
    ASSERT_TRUE(m_client.Format({8, 0, 2}, 0, "", true).ok);
    EXPECT_TRUE(m_client.Finalize({8, 0, 2}).ok);
    EXPECT_EQ(m_client.SideOf({8, 0, 2}, 0).finalization, kClosed);
    EXPECT_EQ(m_client.SideOf({8, 0, 2}, 1).finalization, kNotFinalized)
        << "side B has a random-access file system";
}

TEST_F(FormatEraseFinalize, ClosedRewritableMediumCanBeErasedAndUsedAgain) {
    ASSERT_TRUE(m_client.Finalize({29, 0, 2}).ok);  // DVD-RW
    EXPECT_EQ(m_client.Format({29, 0, 2}, 0).code, 1203);
    ASSERT_TRUE(m_client.Erase({29, 0, 2}, 0).ok);
    EXPECT_TRUE(m_client.Format({29, 0, 2}, 0).ok);
}

TEST_F(FormatEraseFinalize, FinalizeIsRefusedWithTheReason) {
    const std::vector<RefusedRecording> cases = {
        {"random access",
         {14, 0, 3},
         2,
         "1206: The medium in slot 4 of magazine 1 in jukebox \"My Box\" has no sequential file system to "
         "close."},
        {"blank",
         {11, 0, 10},
         2,
         "1206: The medium in slot 11 of magazine 1 in jukebox \"Archive Tower\" has no sequential file "
         "system to "
         "close."},
        {"one side",
         {29, 1, 0},
         0,
         "1000: The call of KrvVolumeFinalize is not valid: only the whole medium, side 2, can be "
         "finalized."},
        {"empty slot", {8, 0, 4}, 2, "501: There is no medium in slot 5 of magazine 1 in jukebox \"MyBox\"."},
        {"disabled", {41, 0, 0}, 2, "1200: Jukebox \"Retired\" is disabled, its media cannot be moved."},
    };
    for (const RefusedRecording& refused : cases) {
        EXPECT_EQ(Describe(m_client.Finalize(refused.slot, refused.side)), refused.expected) << refused.what;
    }
}

}  // namespace
}  // namespace embedded_test
