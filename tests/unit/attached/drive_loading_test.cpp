// Not on Windows: real changers and drives are spoken to by the means of Linux.
// Which drive is behind an element, found out by loading a disc.
#include "embedded/attached/discovery/drive_loading.h"

#include <gtest/gtest.h>

#include "tests/unit/attached/model/model_changer.h"
#include "tests/unit/attached/model/model_drive.h"
#include "tests/unit/attached/model/shared_transport.h"
#include "tests/unit/attached/scripted_device.h"

namespace embedded::attached {
namespace {

constexpr uint8_t kTestUnitReadyCode = 0x00;
constexpr SenseCode kNoMedium{0x2, 0x3A, 0x00};

// A changer that says nothing of its drives: the first element has drive B, the second one drive A.
class DriveLoadingTest : public testing::Test {
  protected:
    DriveLoadingTest() {
        m_changer->media[ModelChanger::kSlot + 2] = {"DISC-1", false, {}};
        for (const auto& drive : {m_driveA, m_driveB})
            drive->failures[kTestUnitReadyCode] = kNoMedium;
        m_changer->onMove = [this](uint16_t source, uint16_t destination, bool) {
            if (const auto drive = DriveAt(destination)) {
                drive->failures.erase(kTestUnitReadyCode);
                drive->becomingReady = m_spinUp;
            }
            const bool isMoved = m_changer->moveFailures.empty();
            if (const auto drive = DriveAt(source); drive && isMoved)
                drive->failures[kTestUnitReadyCode] = kNoMedium;
        };
    }

    std::shared_ptr<ModelDrive> DriveAt(uint16_t element) const {
        if (!m_isWired) return nullptr;
        if (element == ModelChanger::kDrive) return m_driveB;
        return element == ModelChanger::kDrive + 1 ? m_driveA : nullptr;
    }

    Result<Nothing> Find() {
        const Opener open = [this](const std::string& address) -> Result<std::unique_ptr<Transport>> {
            std::shared_ptr<Transport> device = m_changer;
            if (address == "drive A") device = m_driveA;
            if (address == "drive B") device = m_driveB;
            return std::unique_ptr<Transport>(std::make_unique<SharedTransport>(device));
        };
        m_findings = Discover({{"changer", ""}, {"drive A", ""}, {"drive B", ""}}, open, m_waiting);
        return FindDrivesByLoading(m_findings, m_findings.changers.at(0), open, {}, m_waiting);
    }

    // The addresses of the drives by element, "" where none is known.
    std::vector<std::string> Found() const {
        std::vector<std::string> addresses;
        for (const FoundDriveElement& element : m_findings.changers.at(0).drives)
            addresses.push_back(element.drives.empty() ? "" : element.drives.front().place.address);
        return addresses;
    }
    bool IsDiscAtHome() const {
        return m_changer->media.size() == 1 && m_changer->media.contains(ModelChanger::kSlot + 2);
    }

    std::shared_ptr<ModelChanger> m_changer = std::make_shared<ModelChanger>();
    std::shared_ptr<ModelDrive> m_driveA = std::make_shared<ModelDrive>("drive A");
    std::shared_ptr<ModelDrive> m_driveB = std::make_shared<ModelDrive>("drive B");
    int m_spinUp = 3;
    bool m_isWired = true;
    TimelessWaiting m_waiting;
    Findings m_findings;
};

TEST_F(DriveLoadingTest, KnowsADriveByTheDiscThatBecomesReadyInIt) {
    const auto done = Find();
    ASSERT_TRUE(done) << done.GetError().text;
    EXPECT_EQ(Found(), (std::vector<std::string>{"drive B", "drive A"}));
    EXPECT_EQ(m_findings.changers[0].drives[0].evidence, Evidence::Loading);
    EXPECT_TRUE(m_findings.loneDrives.empty());
    EXPECT_TRUE(IsDiscAtHome());
}

TEST_F(DriveLoadingTest, WaitsForADiscThatTakesAWhileToBecomeReady) {
    m_spinUp = 20;
    ASSERT_TRUE(Find());
    EXPECT_EQ(Found(), (std::vector<std::string>{"drive B", "drive A"}));
}

TEST_F(DriveLoadingTest, BringsTheDiscBackWhenNoDriveBecomesReady) {
    m_isWired = false;
    const auto done = Find();
    ASSERT_FALSE(done);
    EXPECT_EQ(done.GetError().text,
              "changer: which drive is in element 256 is not known: no drive became ready with a disc in it");
    EXPECT_EQ(Found(), (std::vector<std::string>{"", ""}));
    EXPECT_EQ(m_findings.loneDrives.size(), 2U);
    EXPECT_TRUE(IsDiscAtHome());
}

TEST_F(DriveLoadingTest, TellsTheDriveToGiveTheDiscAwayThatItHoldsOnTo) {
    // START STOP UNIT is answered as it is told here.
    m_driveA->lies[0x1B] = m_driveB->lies[0x1B] = {};
    int moves = 0;
    const auto wired = m_changer->onMove;
    m_changer->onMove = [this, wired, &moves](uint16_t source, uint16_t destination, bool turns) {
        if (++moves == 2) m_changer->moveFailures = {{0x5, 0x53, 0x00}};
        wired(source, destination, turns);
    };
    const auto done = Find();
    ASSERT_TRUE(done) << done.GetError().text;
    EXPECT_EQ(moves, 5);
    EXPECT_EQ(Found(), (std::vector<std::string>{"drive B", "drive A"}));
    EXPECT_TRUE(IsDiscAtHome());
}

TEST_F(DriveLoadingTest, MovesNothingWithoutADiscInASlot) {
    m_changer->media.clear();
    const auto done = Find();
    ASSERT_FALSE(done);
    EXPECT_EQ(done.GetError().text, "changer: drive element 256 cannot be loaded: no slot holds a disc");
}

TEST_F(DriveLoadingTest, MovesNothingToADriveThatHoldsADisc) {
    m_changer->media[ModelChanger::kDrive] = {"DISC-2", false, {}};
    const auto done = Find();
    ASSERT_FALSE(done);
    EXPECT_EQ(done.GetError().text, "changer: drive element 256 holds a disc; take it out first");
    EXPECT_EQ(m_changer->media.size(), 2U);
}

}  // namespace
}  // namespace embedded::attached
