// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <algorithm>

#include "tests/unit/attached/model/model_drive_fixture.h"

namespace embedded::attached {
namespace {

constexpr uint32_t kDvdBlocks = 2'295'104;

class DiscWritingTest : public ModelDriveFixture {
  protected:
    ChangeResult Format(const FormatOptions& options = {"Archive", "", false}) {
        return FormatDisc(m_device, options, m_limits);
    }

    // Every WRITE begins at a multiple of 32 blocks.
    bool WritesWholeClusters() const {
        for (const std::string& change : m_model.changes) {
            if (change.starts_with("WRITE ") && std::stoul(change.substr(6)) % 32 != 0) return false;
        }
        return true;
    }
    long Count(const std::string& change) const { return std::ranges::count(m_model.changes, change); }

    DiscLimits m_limits;
};

TEST_F(DiscWritingTest, WritesADvdRInOrderAndLeavesItAppendable) {
    InsertOptical(0x0011, kDvdBlocks);
    const auto formatted = Format();
    ASSERT_TRUE(formatted) << formatted.error->text;
    // mkudffs makes 288 blocks; 32 of them go with each command.
    EXPECT_EQ(m_model.changes,
              (std::vector<std::string>{"WRITE 0+32", "WRITE 32+32", "WRITE 64+32", "WRITE 96+32",
                                        "WRITE 128+32", "WRITE 160+32", "WRITE 192+32", "WRITE 224+32",
                                        "WRITE 256+32", "SYNCHRONIZE CACHE"}));
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.fileSystem, "UDF 1.50 seq");
    EXPECT_EQ(disc.label, "Archive");
    EXPECT_TRUE(disc.isAppendable);
    EXPECT_EQ(disc.usedBytes, 288U * 2048);
    EXPECT_EQ(disc.totalBytes, uint64_t{kDvdBlocks} * 2048);
}

TEST_F(DiscWritingTest, WritesADvdRIncrementallyWithMoreSessionsToFollow) {
    InsertOptical(0x0011, kDvdBlocks);
    ASSERT_TRUE(Format());
    // Mode page 05h: the page code without PS, 50 bytes; buffer under-run free, link size valid, write type
    // packet; multi-session 11b, fixed packets, data; mode 1; link size and packet size of 16 blocks.
    EXPECT_EQ(m_model.writeParameters, Hex("05 32 60 E5 08 10 00 00 00 00 00 00 00 10 00 x38"));
}

TEST_F(DiscWritingTest, WritesACdAsATrack) {
    InsertOptical(0x0009, 360'000);
    ASSERT_TRUE(Format());
    // Write type track at once; multi-session 11b, data track; mode 1.
    EXPECT_EQ(m_model.writeParameters, Hex("05 32 41 C4 08 00 x47"));
    EXPECT_EQ(m_model.changes.back(), "CLOSE 1 of 1");
    EXPECT_EQ(Read().label, "Archive");
}

TEST_F(DiscWritingTest, ClosesTheSessionWhenTheDriveReadsClosedOnesOnly) {
    InsertOptical(0x0011, kDvdBlocks);
    m_model.readsClosedSessionsOnly = true;
    ASSERT_TRUE(Format());
    EXPECT_EQ(Count("CLOSE 1 of 1"), 1);
    EXPECT_EQ(m_model.changes.back(), "CLOSE 2 of 0");
    EXPECT_TRUE(Read().isAppendable);
}

TEST_F(DiscWritingTest, BlanksAWrittenDvdRwWhollyBeforeItIsFormatted) {
    InsertOptical(0x0014, kDvdBlocks);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    m_model.busyPolls = 3;
    std::vector<unsigned> blanking;
    const auto formatted = FormatDisc(m_device, {"New", "", false}, {}, [&](DiscStep step, unsigned percent) {
        if (step == DiscStep::Preparing) blanking.push_back(percent);
    });
    ASSERT_TRUE(formatted) << formatted.error->text;
    EXPECT_EQ(m_model.changes.front(), "BLANK disc");
    EXPECT_EQ(blanking, (std::vector<unsigned>{0, 50, 50, 50, 100}));
    EXPECT_EQ(Read().label, "New");
}

TEST_F(DiscWritingTest, DoesNotBlankADiscForALabelThatCannotBeWritten) {
    InsertOptical(0x0014, kDvdBlocks);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    EXPECT_EQ(Format({std::string(127, 'a'), "", false}).side, SideAfter::Untouched);
    EXPECT_TRUE(m_model.changes.empty());
}

TEST_F(DiscWritingTest, DoesNotWriteAWrittenDvdRAgain) {
    InsertOptical(0x0011, kDvdBlocks);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    const auto formatted = Format();
    EXPECT_EQ(formatted.side, SideAfter::Untouched);
    EXPECT_EQ(formatted.error->text,
              "Drive 2 holds a disc that is written already and can be written once only");
    EXPECT_TRUE(m_model.changes.empty());
}

TEST_F(DiscWritingTest, FormatsABdReThatWasNeverFormatted) {
    InsertOptical(0x0043, 12'219'392);
    m_model.isFormatted = false;
    m_model.formats = {0x00, 0x31, 0x30};
    m_model.busyPolls = 2;
    const auto formatted = Format();
    ASSERT_TRUE(formatted) << formatted.error->text;
    // 30h: with spare areas.
    EXPECT_EQ(m_model.changes.front(), "FORMAT UNIT as 48");
    EXPECT_TRUE(WritesWholeClusters());
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.fileSystem, "UDF 2.01");
    EXPECT_FALSE(disc.isSequential);
    EXPECT_EQ(disc.finalization, Finalization::NotFinalized);
    // Little more than the bitmap of free blocks.
    EXPECT_GT(disc.usedBytes, 12'219'392U / 8);
    EXPECT_LT(disc.usedBytes, 12'219'392U / 8 + 20'000);
    EXPECT_GT(disc.totalBytes, uint64_t{12'210'000} * 2048);
}

TEST_F(DiscWritingTest, WritesOnlyTheBlocksOfTheFileSystemAndWhereAnEarlierOneWas) {
    InsertOptical(0x0012, kDvdBlocks);
    ASSERT_TRUE(Format());
    EXPECT_EQ(Count("FORMAT UNIT as 0"), 0);
    EXPECT_TRUE(WritesWholeClusters());
    EXPECT_LT(m_model.changes.size(), 60U);
    EXPECT_EQ(Read().fileSystem, "UDF 2.01");
}

TEST_F(DiscWritingTest, WritesAWriteOnceMediumWithoutTracksInOrder) {
    InsertDirectAccess(0x02, 2048, 1'000'000);
    ASSERT_TRUE(Format());
    EXPECT_EQ(m_model.changes.front(), "WRITE 0+32");
    EXPECT_EQ(Read().fileSystem, "UDF 1.50 seq");
    EXPECT_EQ(Format().side, SideAfter::Untouched);
}

TEST_F(DiscWritingTest, WritesTheRevisionThatIsAskedFor) {
    InsertOptical(0x0012, kDvdBlocks);
    ASSERT_TRUE(Format({"Old", "1.02", false}));
    EXPECT_EQ(Read().fileSystem, "UDF 1.02");
    EXPECT_EQ(Format({"Old", "3.00", false}).error->text,
              "Drive 2 can be given UDF 1.02, 1.50, 2.00 or 2.01 only");
    EXPECT_EQ(Format({"Old", "1.02", true}).error->text,
              "Drive 2 needs UDF 1.50 or later for a sequential file system");
}

TEST_F(DiscWritingTest, CallsASideBadWhoseBlocksCannotBeWritten) {
    InsertOptical(0x0011, kDvdBlocks);
    m_model.unwritable = {100};
    const auto formatted = Format();
    EXPECT_EQ(formatted.side, SideAfter::Bad);
    EXPECT_EQ(formatted.error->text, "Drive 2 failed to write the medium; use another disc (sense 3/0C/00)");
}

TEST_F(DiscWritingTest, CallsASideBadThatReadsBackOtherwise) {
    InsertOptical(0x0012, kDvdBlocks);
    m_model.altered = {257};
    const auto formatted = Format();
    EXPECT_EQ(formatted.side, SideAfter::Bad);
    EXPECT_EQ(formatted.error->text,
              "Drive 2 reads block 257 back other than it was written; use another disc");
}

TEST_F(DiscWritingTest, CallsASideBadThatCannotBeReadBack) {
    InsertOptical(0x0012, kDvdBlocks);
    m_model.unreadable = {40};
    EXPECT_EQ(Format().side, SideAfter::Bad);
}

TEST_F(DiscWritingTest, DoesNotKnowASideWhoseWritingWasBrokenOff) {
    InsertOptical(0x0011, kDvdBlocks);
    for (const size_t write : {1U, 5U}) {
        m_model.loseAtWrite = write;
        const auto formatted = Format();
        EXPECT_EQ(formatted.side, SideAfter::Unknown);
        EXPECT_EQ(formatted.error->kind, ErrorKind::Lost);
    }
}

TEST_F(DiscWritingTest, LeavesASideUntouchedWhoseFirstWriteIsRefused) {
    InsertOptical(0x0012, kDvdBlocks);
    m_model.failures[0x2A] = {0x7, 0x27, 0x00};
    EXPECT_EQ(Format().side, SideAfter::Untouched);
}

TEST_F(DiscWritingTest, DoesNotWriteAProtectedMedium) {
    InsertDirectAccess(0x03, 2048, 100'000);
    m_model.isWriteProtected = true;
    EXPECT_EQ(Format().side, SideAfter::Untouched);
    EXPECT_EQ(EraseDisc(m_device, EraseExtent::Whole).side, SideAfter::Untouched);
    EXPECT_TRUE(m_model.changes.empty());
}

TEST_F(DiscWritingTest, DoesNotWaitForADriveThatNeverFinishesAndTellsNoProgress) {
    InsertOptical(0x0014, kDvdBlocks);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    m_model.busyPolls = 1'000'000;
    m_model.tellsProgress = false;
    m_limits.blank = std::chrono::milliseconds(60'000);
    const auto erased = EraseDisc(m_device, EraseExtent::Quick, m_limits);
    EXPECT_EQ(erased.side, SideAfter::Unknown);
    EXPECT_EQ(erased.error->text, "Drive 2 has not finished in time; look at it and try again");
    EXPECT_LE(m_waiting.GetPaused(), std::chrono::milliseconds(60'000));
}

TEST_F(DiscWritingTest, WaitsForADriveForAsLongAsItGetsFurther) {
    InsertOptical(0x0014, kDvdBlocks);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    m_model.busyPolls = 200;
    m_model.progressPerPoll = 1;
    m_limits.blank = std::chrono::milliseconds(60'000);
    m_limits.standstill = std::chrono::milliseconds(10'000);
    EXPECT_TRUE(EraseDisc(m_device, EraseExtent::Quick, m_limits));
    EXPECT_GE(m_waiting.GetPaused(), std::chrono::milliseconds(300'000));
}

TEST_F(DiscWritingTest, DoesNotWaitForADriveThatStandsStill) {
    InsertOptical(0x0014, kDvdBlocks);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    m_model.busyPolls = 1'000'000;
    m_limits.standstill = std::chrono::milliseconds(60'000);
    const auto erased = EraseDisc(m_device, EraseExtent::Quick, m_limits);
    EXPECT_EQ(erased.side, SideAfter::Unknown);
    EXPECT_EQ(erased.error->text, "Drive 2 has not finished in time; look at it and try again");
    EXPECT_LE(m_waiting.GetPaused(), std::chrono::milliseconds(60'000));
}

TEST_F(DiscWritingTest, BlanksACdRwQuicklyOrWholly) {
    InsertOptical(0x000A, 360'000);
    for (const auto& [extent, change] :
         {std::pair(EraseExtent::Quick, "BLANK minimally"), std::pair(EraseExtent::Whole, "BLANK disc")}) {
        m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
        m_model.isClosed = true;
        ASSERT_TRUE(EraseDisc(m_device, extent));
        EXPECT_EQ(m_model.changes.back(), change);
        EXPECT_EQ(Read().content, DiscContent::Blank);
    }
}

TEST_F(DiscWritingTest, OverwritesARewritableMediumToEraseIt) {
    InsertOptical(0x0043, 12'219'392);
    ASSERT_TRUE(Format());
    m_model.changes.clear();
    const auto erased = EraseDisc(m_device, EraseExtent::Quick);
    ASSERT_TRUE(erased) << erased.error->text;
    // 600 blocks at both ends, which lie in 19 clusters each.
    EXPECT_EQ(m_model.changes.size(), 19U + 19U + 1U);
    EXPECT_EQ(Read().content, DiscContent::Blank);
}

TEST_F(DiscWritingTest, HasNothingToEraseOnABlankDisc) {
    InsertOptical(0x0014, kDvdBlocks);
    EXPECT_TRUE(EraseDisc(m_device, EraseExtent::Quick));
    InsertOptical(0x0012, kDvdBlocks);
    m_model.isFormatted = false;
    EXPECT_TRUE(EraseDisc(m_device, EraseExtent::Quick));
    EXPECT_TRUE(m_model.changes.empty());
}

TEST_F(DiscWritingTest, DoesNotEraseWhatCanBeWrittenOnceOnly) {
    InsertOptical(0x0011, kDvdBlocks);
    EXPECT_EQ(EraseDisc(m_device, EraseExtent::Quick).error->text,
              "Drive 2 cannot erase a medium that can be written once only (DVD-R)");
}

TEST_F(DiscWritingTest, ClosesADvdRForGood) {
    InsertOptical(0x0011, kDvdBlocks);
    ASSERT_TRUE(Format());
    m_model.changes.clear();
    m_model.busyPolls = 4;
    const auto closed = FinalizeDisc(m_device);
    ASSERT_TRUE(closed) << closed.error->text;
    EXPECT_EQ(m_model.changes, (std::vector<std::string>{"CLOSE 1 of 1", "CLOSE 2 of 0"}));
    EXPECT_EQ(m_model.writeParameters[3] & 0xC0, 0);
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.finalization, Finalization::Closed);
    EXPECT_FALSE(disc.isAppendable);
    EXPECT_EQ(disc.label, "Archive");

    m_model.changes.clear();
    EXPECT_TRUE(FinalizeDisc(m_device));
    EXPECT_TRUE(m_model.changes.empty());
}

TEST_F(DiscWritingTest, ClosesADvdPlusRAndABdRByTheFunctionForIt) {
    for (const uint16_t profile : {uint16_t{0x001B}, uint16_t{0x0041}}) {
        InsertOptical(profile, kDvdBlocks);
        m_model.sessions.clear();
        m_model.nextWritable = 0;
        m_model.isClosed = false;
        ASSERT_TRUE(Format());
        ASSERT_TRUE(FinalizeDisc(m_device));
        EXPECT_EQ(m_model.changes.back(), "CLOSE 6 of 0");
        EXPECT_EQ(Read().finalization, Finalization::Closed);
    }
}

TEST_F(DiscWritingTest, HasNothingToCloseOnAReadOnlyDisc) {
    InsertOptical(0x0010, 0);
    m_model.Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    EXPECT_TRUE(FinalizeDisc(m_device));
    EXPECT_TRUE(m_model.changes.empty());
}

TEST_F(DiscWritingTest, DoesNotCallADiscClosedThatFailsToClose) {
    InsertOptical(0x0011, kDvdBlocks);
    ASSERT_TRUE(Format());
    m_model.failures[0x5B] = {0x3, 0x72, 0x00};
    const auto closed = FinalizeDisc(m_device);
    EXPECT_EQ(closed.side, SideAfter::Bad);
    EXPECT_EQ(closed.error->text,
              "Drive 2 failed to close the session on the disc; use another disc (sense 3/72/00)");
}

TEST_F(DiscWritingTest, ClosesNeitherBlankDiscsNorThoseWrittenInAnyOrder) {
    InsertOptical(0x0011, kDvdBlocks);
    EXPECT_EQ(FinalizeDisc(m_device).error->text, "Drive 2 holds a blank disc; there is nothing to close");
    InsertOptical(0x0012, kDvdBlocks);
    EXPECT_EQ(FinalizeDisc(m_device).error->text,
              "Drive 2 holds a disc that is not written sequentially and cannot be closed (DVD-RAM)");
}

}  // namespace
}  // namespace embedded::attached
