// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>

#include "embedded/attached/changer/inventory.h"
#include "embedded/attached/device/identity.h"
#include "embedded/attached/discovery/portal.h"
#include "embedded/attached/scsi/block_transfer.h"
#include "embedded/attached/scsi/capacity.h"
#include "embedded/attached/scsi/disc_information.h"
#include "embedded/attached/scsi/medium_control.h"
#include "embedded/attached/transport/iscsi_transport.h"
#include "embedded/attached/transport/open_transport.h"
#include "tests/emulated_jukebox/emulated_jukebox.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kMoveLimit{30'000};

Device Open(const std::string& address, const IscsiLogin& login = {}) {
    auto transport = OpenTransport(address, login);
    if (!transport) {
        ADD_FAILURE() << transport.GetError().text;
        std::abort();
    }
    return {std::move(*transport), address};
}

const Element& ElementAt(const std::vector<Element>& elements, uint16_t address) {
    for (const Element& element : elements) {
        if (element.address == address) return element;
    }
    ADD_FAILURE() << "no element " << address;
    std::abort();
}

std::vector<uint8_t> FileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class IscsiTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_jukebox =
            std::make_unique<EmulatedJukebox>("--slots 8 --drives 2 --mailslots 2 --discs 3 --blank 1");
    }
    static void TearDownTestSuite() { s_jukebox.reset(); }

    static std::unique_ptr<EmulatedJukebox> s_jukebox;
};
std::unique_ptr<EmulatedJukebox> IscsiTest::s_jukebox;

TEST_F(IscsiTest, ReadsTheInventoryOfAChanger) {
    Device changer = Open(s_jukebox->GetAddress());
    const auto geometry = ReadGeometry(changer);
    ASSERT_TRUE(geometry) << geometry.GetError().text;
    EXPECT_EQ(geometry->addresses.slots, (ElementRange{1024, 8}));
    const auto inventory = ReadInventory(changer, *geometry);
    ASSERT_TRUE(inventory) << inventory.GetError().text;
    EXPECT_EQ(inventory->pickers.size(), 1U);
    EXPECT_EQ(inventory->drives.size(), 2U);
    EXPECT_EQ(inventory->mailSlots.size(), 2U);
    ASSERT_EQ(inventory->slots.size(), 8U);
    EXPECT_EQ(inventory->slots[0].volumeTag, "D000001");
    EXPECT_TRUE(inventory->slots[3].isFull);
    EXPECT_FALSE(inventory->slots[4].isFull);
    // The answer ends 8 bytes early, within the serial number of the last drive.
    EXPECT_FALSE(inventory->drives[0].driveIdentifier->isCut);
    EXPECT_TRUE(inventory->drives[1].driveIdentifier->isCut);
    EXPECT_TRUE(changer.TakeChanges().contains(Change::Reset));
}

TEST_F(IscsiTest, MovesADiscIntoADriveAndReadsItsBlocks) {
    Device changer = Open(s_jukebox->GetAddress());
    Device drive = Open(s_jukebox->GetDriveAddress(1));
    ASSERT_TRUE(changer.WaitUntilReady(kMoveLimit));
    ASSERT_TRUE(changer.Do(MoveMedium({1, 1024, 256, Turning::Keep}), kMoveLimit));
    ASSERT_TRUE(drive.WaitUntilReady(kMoveLimit));
    const auto configuration = drive.Ask(GetConfiguration(1024), 1024);
    ASSERT_TRUE(configuration) << configuration.GetError().text;
    EXPECT_EQ(DecodeConfiguration(*configuration)->currentProfile, 0x0010);
    const auto disc = drive.Ask(ReadDiscInformation(34), 34);
    ASSERT_TRUE(disc) << disc.GetError().text;
    EXPECT_EQ(DecodeDiscInformation(*disc)->status, DiscStatus::Complete);

    const auto content = FileBytes(s_jukebox->GetFolder() / "discs/D000001");
    const auto capacity = drive.Ask(ReadCapacity10(), 8);
    ASSERT_TRUE(capacity) << capacity.GetError().text;
    EXPECT_EQ((DecodeCapacity10(*capacity)->lastBlock + 1) * 2048, content.size());
    const auto blocks = drive.Ask(Read10(0, 64), size_t{64} * 2048);
    ASSERT_TRUE(blocks) << blocks.GetError().text;
    EXPECT_TRUE(std::equal(blocks->begin(), blocks->end(), content.begin()));

    const auto drives = ReadElements(changer, ElementType::Drive, {256, 2});
    EXPECT_EQ(ElementAt(*drives, 256).source, 1024);
    const auto again = changer.Do(MoveMedium({1, 1025, 256, Turning::Keep}), kMoveLimit);
    ASSERT_FALSE(again);
    EXPECT_EQ(again.GetError().sense, (SenseCode{0x5, 0x3B, 0x0D}));
    ASSERT_TRUE(changer.Do(MoveMedium({1, 256, 1024, Turning::Keep}), kMoveLimit));
    EXPECT_TRUE(ElementAt(*ReadElements(changer, ElementType::Slot, {1024, 8}), 1024).isFull);
}

TEST_F(IscsiTest, WritesBlocksToABlankDisc) {
    Device changer = Open(s_jukebox->GetAddress());
    Device drive = Open(s_jukebox->GetDriveAddress(2));
    ASSERT_TRUE(changer.WaitUntilReady(kMoveLimit));
    ASSERT_TRUE(changer.Do(MoveMedium({1, 1027, 257, Turning::Keep}), kMoveLimit));
    ASSERT_TRUE(drive.WaitUntilReady(kMoveLimit));
    std::vector<uint8_t> data(size_t{32} * 2048);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<uint8_t>(i * 7 + i / 2048);
    ASSERT_TRUE(drive.Do(Write10(0, 32), kMoveLimit, data));
    ASSERT_TRUE(drive.Do(SynchronizeCache(), kMoveLimit));
    EXPECT_EQ(FileBytes(s_jukebox->GetFolder() / "discs/D000004"), data);
    ASSERT_TRUE(changer.Do(MoveMedium({1, 257, 1027, Turning::Keep}), kMoveLimit));
}

TEST_F(IscsiTest, SeesWhatAnOperatorHasMoved) {
    Device changer = Open(s_jukebox->GetAddress());
    s_jukebox->Run("insert", "769 blank");
    const auto before = ReadElements(changer, ElementType::MailSlot, {768, 2});
    EXPECT_TRUE(ElementAt(*before, 769).isFull);
    EXPECT_EQ(ElementAt(*before, 769).volumeTag, "D000005");
    s_jukebox->Run("remove", "769");
    EXPECT_FALSE(ElementAt(*ReadElements(changer, ElementType::MailSlot, {768, 2}), 769).isFull);
}

TEST_F(IscsiTest, SaysWhatTheDeviceSays) {
    Device drive = Open(s_jukebox->GetDriveAddress(1));
    EXPECT_EQ(drive.WaitUntilReady(kMoveLimit).GetError().text,
              drive.GetName() + " holds no medium; insert one (sense 2/3A/00)");
}

TEST_F(IscsiTest, ListsTheUnitsOfAPortal) {
    const auto units = ListPortalUnits(*ParseIscsiPortal(s_jukebox->GetPortal()), {}, {});
    ASSERT_TRUE(units) << units.GetError().text;
    EXPECT_TRUE(units->problems.empty());
    ASSERT_EQ(units->units.size(), 4U);
    for (uint16_t lun = 0; lun < 4; ++lun) {
        EXPECT_EQ(units->units[lun].lun, lun);
        EXPECT_EQ(units->units[lun].target, s_jukebox->GetTarget());
    }
}

TEST_F(IscsiTest, TellsThatThereIsNoSuchTarget) {
    const auto transport =
        OpenTransport("iscsi://" + s_jukebox->GetPortal() + "/iqn.2026-11.example:other/1", {});
    ASSERT_FALSE(transport);
    EXPECT_EQ(transport.GetError().kind, ErrorKind::NotFound);
    EXPECT_EQ(transport.GetError().text, "there is no target iqn.2026-11.example:other at " +
                                             s_jukebox->GetPortal() + ", or not for this host");
}

TEST_F(IscsiTest, TellsThatThereIsNoSuchHost) {
    const auto targets = ListIscsiTargets({"no-such-host.invalid", 3260}, {}, {});
    ASSERT_FALSE(targets);
    // Without any name server there is no telling.
    EXPECT_TRUE(targets.GetError().kind == ErrorKind::NotFound ||
                targets.GetError().kind == ErrorKind::Unreachable);
    EXPECT_NE(targets.GetError().text.find("no-such-host.invalid"), std::string::npos);
}

// Its daemon is killed, stopped and started again.
class IscsiConnectionTest : public testing::Test {
  protected:
    IscsiAddress Address() const { return *ParseIscsiAddress(m_jukebox.GetAddress()); }

    EmulatedJukebox m_jukebox{"--slots 2 --discs 1"};
};

TEST_F(IscsiConnectionTest, IsLostWithTheTargetAndMadeAnewWhenItIsBack) {
    Device changer = Open(m_jukebox.GetAddress());
    ASSERT_TRUE(changer.WaitUntilReady(kMoveLimit));
    m_jukebox.Run("kill");
    const auto start = steady_clock::now();
    const auto asked = changer.WaitUntilReady(kMoveLimit);
    ASSERT_FALSE(asked);
    EXPECT_EQ(asked.GetError().kind, ErrorKind::Unreachable);
    EXPECT_LT(steady_clock::now() - start, milliseconds(5'000));
    m_jukebox.Run("restart");
    EXPECT_TRUE(changer.WaitUntilReady(kMoveLimit));
    EXPECT_TRUE(changer.TakeChanges().contains(Change::Reset));
}

TEST_F(IscsiConnectionTest, EndsACommandAtItsTimeLimit) {
    auto transport = OpenIscsiTransport(Address(), {}, {});
    ASSERT_TRUE(transport);
    m_jukebox.Freeze();
    const Cdb cdb = TestUnitReady();
    const auto start = steady_clock::now();
    const auto sent = (*transport)->Send({cdb.GetBytes(), {}, {}, milliseconds(300)});
    const auto took = steady_clock::now() - start;
    m_jukebox.Thaw();
    ASSERT_FALSE(sent);
    EXPECT_EQ(sent.GetError().kind, ErrorKind::TimedOut);
    EXPECT_GE(took, milliseconds(300));
    EXPECT_LT(took, milliseconds(3'000));
    EXPECT_FALSE((*transport)->IsConnected());
    EXPECT_TRUE((*transport)->Reconnect());
    EXPECT_TRUE((*transport)->Send({cdb.GetBytes(), {}, {}, kMoveLimit}));
}

TEST_F(IscsiConnectionTest, NoticesATargetThatGivesNoSignOfLifeLongBeforeTheTimeLimit) {
    const IscsiLimits limits{milliseconds(5'000), milliseconds(100), milliseconds(600)};
    auto transport = OpenIscsiTransport(Address(), {}, limits);
    ASSERT_TRUE(transport);
    m_jukebox.Freeze();
    const Cdb cdb = TestUnitReady();
    const auto start = steady_clock::now();
    const auto sent = (*transport)->Send({cdb.GetBytes(), {}, {}, milliseconds(300'000)});
    const auto took = steady_clock::now() - start;
    m_jukebox.Thaw();
    ASSERT_FALSE(sent);
    EXPECT_EQ(sent.GetError().kind, ErrorKind::Lost);
    EXPECT_EQ(sent.GetError().text,
              m_jukebox.GetTarget() + " at " + m_jukebox.GetPortal() +
                  " has given no sign of life for 1 second; check its power and the network");
    EXPECT_LT(took, milliseconds(4'000));
}

TEST_F(IscsiConnectionTest, NoticesADeadConnectionWithin30SecondsByDefault) {
    EXPECT_LE(IscsiLimits().silence + IscsiLimits().ping, milliseconds(30'000));
    EXPECT_LE(IscsiLimits().connect, milliseconds(30'000));
}

TEST_F(IscsiConnectionTest, EndsALoginAtItsTimeLimit) {
    m_jukebox.Freeze();
    const auto start = steady_clock::now();
    const auto transport =
        OpenIscsiTransport(Address(), {}, {milliseconds(400), milliseconds(100), milliseconds(1'000)});
    const auto took = steady_clock::now() - start;
    m_jukebox.Thaw();
    ASSERT_FALSE(transport);
    EXPECT_EQ(transport.GetError().kind, ErrorKind::TimedOut);
    EXPECT_LT(took, milliseconds(3'000));
}

TEST_F(IscsiConnectionTest, TellsThatNobodyListens) {
    m_jukebox.Run("kill");
    const auto targets = ListIscsiTargets(Address().portal, {}, {});
    ASSERT_FALSE(targets);
    EXPECT_EQ(targets.GetError().kind, ErrorKind::Unreachable);
    EXPECT_EQ(
        targets.GetError().text,
        m_jukebox.GetPortal() + " refuses the connection; check the port, and that the target is running");
    m_jukebox.Run("restart");
}

class IscsiLoginTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_jukebox = std::make_unique<EmulatedJukebox>("--slots 2 --user operator --secret opensesame42");
    }
    static void TearDownTestSuite() { s_jukebox.reset(); }

    static Error Refusal(const IscsiLogin& login) {
        const auto transport = OpenTransport(s_jukebox->GetAddress(), login);
        return transport ? Error() : transport.GetError();
    }

    static std::unique_ptr<EmulatedJukebox> s_jukebox;
};
std::unique_ptr<EmulatedJukebox> IscsiLoginTest::s_jukebox;

TEST_F(IscsiLoginTest, LetsInWhoKnowsTheSecret) {
    Device changer = Open(s_jukebox->GetAddress(), {"operator", "opensesame42", ""});
    EXPECT_TRUE(changer.WaitUntilReady(kMoveLimit));
}

TEST_F(IscsiLoginTest, TellsAWrongUserOrSecretWithoutShowingIt) {
    const std::string peer = s_jukebox->GetTarget() + " at " + s_jukebox->GetPortal();
    for (const IscsiLogin& login :
         {IscsiLogin{"operator", "closedsesame", ""}, IscsiLogin{"stranger", "opensesame42", ""}}) {
        EXPECT_EQ(Refusal(login).kind, ErrorKind::NotPermitted);
        EXPECT_EQ(Refusal(login).text, peer + " does not accept the user or the secret");
    }
    EXPECT_EQ(Refusal({}).text, peer + " asks for a user and a secret");
}

// Thousands of elements, more than one page.
TEST(LargeChangerTest, IsReadWithinASecondOfProcessorTime) {
    const EmulatedJukebox jukebox("--slots 10000 --mailslots 10");
    Device changer = Open(jukebox.GetAddress());
    const std::clock_t start = std::clock();
    const auto geometry = ReadGeometry(changer);
    ASSERT_TRUE(geometry) << geometry.GetError().text;
    const auto inventory = ReadInventory(changer, *geometry);
    const std::clock_t took = std::clock() - start;
    ASSERT_TRUE(inventory) << inventory.GetError().text;
    ASSERT_EQ(inventory->slots.size(), 10'000U);
    EXPECT_EQ(inventory->slots.front().address, 1024);
    EXPECT_EQ(inventory->slots.back().address, 11'023);
    EXPECT_LT(took, CLOCKS_PER_SEC);
}

}  // namespace
}  // namespace embedded::attached
