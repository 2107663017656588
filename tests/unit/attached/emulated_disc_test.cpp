// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

#include "embedded/attached/disc/disc.h"
#include "embedded/attached/scsi/medium_control.h"
#include "embedded/attached/transport/open_transport.h"
#include "tests/emulated_jukebox/emulated_jukebox.h"

namespace embedded::attached {
namespace {

constexpr std::chrono::milliseconds kMoveLimit{30'000};
constexpr uint16_t kFirstSlot = 1024;
constexpr uint16_t kDrive = 256;

Device Open(const std::string& address) {
    auto transport = OpenTransport(address, {});
    if (!transport) {
        ADD_FAILURE() << transport.GetError().text;
        std::abort();
    }
    return {std::move(*transport), address};
}

std::string OutputOf(const std::string& command) {
    FILE* const pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> buffer{};
    while (const size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), count);
    pclose(pipe);
    return output;
}

// What blkid, another program, says of the file behind a disc: TYPE, VERSION, LABEL, UUID.
std::map<std::string, std::string> Blkid(const std::filesystem::path& file) {
    std::istringstream lines(OutputOf("PATH=$PATH:/usr/sbin:/sbin blkid -p -o udev '" + file.string() + "'"));
    std::map<std::string, std::string> values;
    for (std::string line; std::getline(lines, line);) {
        const size_t equals = line.find('=');
        if (line.starts_with("ID_FS_") && equals != std::string::npos)
            values[line.substr(6, equals - 6)] = line.substr(equals + 1);
    }
    return values;
}

// What udfinfo, another program, says of the file behind a disc.
std::map<std::string, std::string> Udfinfo(const std::filesystem::path& file) {
    std::istringstream lines(
        OutputOf("PATH=$PATH:/usr/sbin:/sbin udfinfo --utf8 '" + file.string() + "' 2>&1"));
    std::map<std::string, std::string> values;
    for (std::string line; std::getline(lines, line);) {
        const size_t equals = line.find('=');
        if (equals != std::string::npos) values[line.substr(0, equals)] = line.substr(equals + 1);
    }
    return values;
}

// A jukebox with one drive, whose discs are loaded by their slots.
class EmulatedDiscTest : public testing::Test {
  protected:
    explicit EmulatedDiscTest(const std::string& options)
        : m_jukebox(options),
          m_changer(Open(m_jukebox.GetAddress())),
          m_drive(Open(m_jukebox.GetDriveAddress(1))) {
        EXPECT_TRUE(m_changer.WaitUntilReady(kMoveLimit));
    }

    // Slots count from 1.
    void Load(int slot) { Move(static_cast<uint16_t>(kFirstSlot + slot - 1), kDrive); }
    void Unload(int slot) { Move(kDrive, static_cast<uint16_t>(kFirstSlot + slot - 1)); }

    DiscDescription Read() {
        const auto disc = ReadDisc(m_drive);
        if (disc) return *disc;
        ADD_FAILURE() << disc.GetError().text;
        return {};
    }

    std::filesystem::path FileOf(int disc) const {
        return m_jukebox.GetFolder() / "discs" / ("D00000" + std::to_string(disc));
    }

    EmulatedJukebox m_jukebox;
    Device m_changer;
    Device m_drive;

  private:
    void Move(uint16_t source, uint16_t destination) {
        const auto moved = m_changer.Do(MoveMedium({1, source, destination, Turning::Keep}), kMoveLimit);
        EXPECT_TRUE(moved) << moved.GetError().text;
    }
};

class EmulatedDvdTest : public EmulatedDiscTest {
  protected:
    EmulatedDvdTest() : EmulatedDiscTest("--slots 4 --discs 1 --blank 2") {}
};

TEST_F(EmulatedDvdTest, DescribesADiscWithAFileSystem) {
    Load(1);
    const DiscDescription disc = Read();
    EXPECT_EQ(MediaTypeName(disc.mediumType), "DVD-ROM");
    EXPECT_EQ(disc.content, DiscContent::FileSystem);
    EXPECT_EQ(disc.finalization, Finalization::Closed);
    EXPECT_FALSE(disc.isWritable);
    EXPECT_EQ(disc.fileSystem, "UDF 2.01 seq");
    EXPECT_EQ(disc.label, "Disc D000001");
    EXPECT_EQ(disc.uuid, Blkid(FileOf(1))["UUID"]);
    EXPECT_EQ(disc.totalBytes, std::filesystem::file_size(FileOf(1)));
    EXPECT_EQ(disc.usedBytes, disc.totalBytes);
}

TEST_F(EmulatedDvdTest, DescribesABlankDisc) {
    Load(2);
    const DiscDescription disc = Read();
    EXPECT_EQ(MediaTypeName(disc.mediumType), "DVD+R");
    EXPECT_EQ(disc.content, DiscContent::Blank);
    EXPECT_EQ(disc.finalization, Finalization::NotFinalized);
    EXPECT_TRUE(disc.isWritable);
    EXPECT_EQ(disc.totalBytes, uint64_t{0x230540} * 2048);
    EXPECT_EQ(disc.usedBytes, 0U);
}

TEST_F(EmulatedDvdTest, DoesNotDescribeADiscThatIsGone) {
    Load(1);
    Unload(1);
    const auto disc = ReadDisc(m_drive);
    ASSERT_FALSE(disc);
    EXPECT_EQ(disc.GetError().sense, (SenseCode{0x2, 0x3A, 0x00}));
}

TEST_F(EmulatedDvdTest, WritesAFileSystemToABlankDisc) {
    Load(2);
    std::map<DiscStep, unsigned> steps;
    const auto formatted = FormatDisc(m_drive, {"Sales 2005 \u00e4", "", false}, {},
                                      [&](DiscStep step, unsigned percent) { steps[step] = percent; });
    ASSERT_TRUE(formatted) << formatted.error->text;
    // This drive can read a disc only after its session was closed.
    EXPECT_EQ(steps, (std::map<DiscStep, unsigned>{
                         {DiscStep::Writing, 100}, {DiscStep::Comparing, 100}, {DiscStep::Closing, 100}}));
    auto found = Blkid(FileOf(2));
    EXPECT_EQ(found["TYPE"], "udf");
    EXPECT_EQ(found["VERSION"], "1.50");
    EXPECT_EQ(Udfinfo(FileOf(2))["label"], "Sales 2005 \u00e4");

    Unload(2);
    Load(2);
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.content, DiscContent::FileSystem);
    EXPECT_EQ(disc.fileSystem, "UDF 1.50 seq");
    EXPECT_EQ(disc.label, "Sales 2005 \u00e4");
    EXPECT_EQ(disc.uuid, found["UUID"]);
    EXPECT_EQ(disc.finalization, Finalization::Closed);
    EXPECT_TRUE(FinalizeDisc(m_drive));
}

TEST_F(EmulatedDvdTest, RefusesADiscThatCannotBeWritten) {
    Load(1);
    const auto before = std::filesystem::last_write_time(FileOf(1));
    const auto formatted = FormatDisc(m_drive, {});
    EXPECT_EQ(formatted.side, SideAfter::Untouched);
    EXPECT_EQ(formatted.error->text, m_drive.GetName() + " cannot write this medium (DVD-ROM)");
    EXPECT_EQ(EraseDisc(m_drive, EraseExtent::Quick).side, SideAfter::Untouched);
    EXPECT_EQ(std::filesystem::last_write_time(FileOf(1)), before);
}

TEST_F(EmulatedDvdTest, DoesNotEraseWhatCanBeWrittenOnceOnly) {
    Load(2);
    const auto erased = EraseDisc(m_drive, EraseExtent::Quick);
    EXPECT_EQ(erased.side, SideAfter::Untouched);
    EXPECT_EQ(erased.error->text,
              m_drive.GetName() + " cannot erase a medium that can be written once only (DVD+R)");
}

TEST_F(EmulatedDvdTest, DoesNotWriteALabelThatIsTooLong) {
    Load(2);
    const auto formatted = FormatDisc(m_drive, {std::string(127, 'a'), "", false});
    EXPECT_EQ(formatted.side, SideAfter::Untouched);
    EXPECT_EQ(formatted.error->text, "mkudffs makes no file system: Option --label is too long");
    EXPECT_EQ(std::filesystem::file_size(FileOf(2)), 0U);
}

class EmulatedDiskTest : public EmulatedDiscTest {
  protected:
    EmulatedDiskTest()
        : EmulatedDiscTest("--slots 4 --discs 1 --blank 2 --disk-drives --blank-size 4194304") {}
};

TEST_F(EmulatedDiskTest, DescribesABlankMedium) {
    Load(2);
    const DiscDescription disc = Read();
    EXPECT_EQ(MediaTypeName(disc.mediumType), "MO Rewritable");
    EXPECT_EQ(disc.content, DiscContent::Blank);
    EXPECT_TRUE(disc.isWritable);
    EXPECT_FALSE(disc.isSequential);
    EXPECT_EQ(disc.blockSize, 512U);
    EXPECT_EQ(disc.totalBytes, 4'194'304U);
    EXPECT_EQ(disc.usedBytes, 0U);
}

TEST_F(EmulatedDiskTest, WritesAFileSystemInAnyOrderAndErasesIt) {
    Load(2);
    const auto formatted = FormatDisc(m_drive, {"Archive", "", false});
    ASSERT_TRUE(formatted) << formatted.error->text;
    auto found = Blkid(FileOf(2));
    EXPECT_EQ(found["TYPE"], "udf");
    EXPECT_EQ(found["VERSION"], "2.01");
    EXPECT_EQ(found["LABEL"], "Archive");
    auto space = Udfinfo(FileOf(2));
    EXPECT_EQ(space["integrity"], "closed");

    DiscDescription disc = Read();
    EXPECT_EQ(disc.fileSystem, "UDF 2.01");
    EXPECT_EQ(disc.label, "Archive");
    EXPECT_EQ(disc.uuid, found["UUID"]);
    EXPECT_FALSE(disc.isSequential);
    EXPECT_EQ(disc.finalization, Finalization::NotFinalized);
    EXPECT_EQ(std::to_string(disc.usedBytes / 512), space["usedblocks"]);
    EXPECT_EQ(std::to_string((disc.totalBytes - disc.usedBytes) / 512), space["freeblocks"]);

    const auto erased = EraseDisc(m_drive, EraseExtent::Quick);
    ASSERT_TRUE(erased) << erased.error->text;
    EXPECT_TRUE(Blkid(FileOf(2)).empty());
    EXPECT_EQ(Read().content, DiscContent::Blank);
}

TEST_F(EmulatedDiskTest, WritesASequentialFileSystemWhenAskedTo) {
    Load(2);
    const auto formatted = FormatDisc(m_drive, {"Log", "", true});
    ASSERT_TRUE(formatted) << formatted.error->text;
    EXPECT_EQ(Blkid(FileOf(2))["VERSION"], "1.50");
    EXPECT_EQ(Udfinfo(FileOf(2))["vatblock"], "8191");
    const DiscDescription disc = Read();
    EXPECT_EQ(disc.fileSystem, "UDF 1.50 seq");
    EXPECT_TRUE(disc.isSequential);
}

TEST_F(EmulatedDiskTest, FindsNothingOfAnEarlierFileSystemAfterAFormat) {
    OutputOf("PATH=$PATH:/usr/sbin:/sbin mkfs.ext4 -q -F '" + FileOf(2).string() + "' 2>&1");
    Load(2);
    ASSERT_EQ(Read().fileSystem, "ext4");
    ASSERT_TRUE(FormatDisc(m_drive, {"New", "", false}));
    EXPECT_EQ(Blkid(FileOf(2))["TYPE"], "udf");
    EXPECT_EQ(Read().fileSystem, "UDF 2.01");
}

TEST_F(EmulatedDiskTest, ErasesTheWholeMedium) {
    OutputOf("yes | head -c 4194304 > '" + FileOf(2).string() + "'");
    Load(2);
    ASSERT_EQ(Read().content, DiscContent::NoFileSystem);
    const auto erased = EraseDisc(m_drive, EraseExtent::Whole);
    ASSERT_TRUE(erased) << erased.error->text;
    EXPECT_EQ(OutputOf("cmp -n 4194304 '" + FileOf(2).string() + "' /dev/zero 2>&1"), "");
}

TEST_F(EmulatedDiskTest, TellsNoiseFromOtherData) {
    OutputOf("head -c 4194304 /dev/urandom > '" + FileOf(2).string() + "'");
    Load(2);
    EXPECT_EQ(Read().content, DiscContent::Encrypted);
}

TEST_F(EmulatedDiskTest, CannotCloseAMediumThatIsWrittenInAnyOrder) {
    Load(2);
    const auto closed = FinalizeDisc(m_drive);
    EXPECT_EQ(closed.side, SideAfter::Untouched);
    EXPECT_EQ(closed.error->text,
              m_drive.GetName() +
                  " holds a disc that is not written sequentially and cannot be closed (MO Rewritable)");
}

class EmulatedReadOnlyDiskTest : public EmulatedDiscTest {
  protected:
    EmulatedReadOnlyDiskTest() : EmulatedDiscTest("--slots 2 --blank 1 --disk-drives --read-only") {}
};

TEST_F(EmulatedReadOnlyDiskTest, IsNotWrittenTo) {
    Load(1);
    EXPECT_FALSE(Read().isWritable);
    for (const ChangeResult& result : {FormatDisc(m_drive, {}), EraseDisc(m_drive, EraseExtent::Quick)}) {
        EXPECT_EQ(result.side, SideAfter::Untouched);
        EXPECT_EQ(
            result.error->text,
            m_drive.GetName() +
                " finds the medium protected against writing; move its protection tab, or use another one");
    }
}

}  // namespace
}  // namespace embedded::attached
