// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
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

class EmulatedDiskTest : public EmulatedDiscTest {
  protected:
    EmulatedDiskTest() : EmulatedDiscTest("--slots 4 --discs 1 --blank 2 --disk-drives") {}
};

TEST_F(EmulatedDiskTest, DescribesABlankMedium) {
    Load(2);
    const DiscDescription disc = Read();
    EXPECT_EQ(MediaTypeName(disc.mediumType), "MO Rewritable");
    EXPECT_EQ(disc.content, DiscContent::Blank);
    EXPECT_TRUE(disc.isWritable);
    EXPECT_FALSE(disc.isSequential);
    EXPECT_EQ(disc.blockSize, 512U);
    EXPECT_EQ(disc.totalBytes, 16'777'216U);
    EXPECT_EQ(disc.usedBytes, 0U);
}

}  // namespace
}  // namespace embedded::attached
