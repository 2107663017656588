// Not on Windows: real changers and drives are spoken to by the means of Linux.
// A whole jukebox: its changer and its drives, as models of devices.
#include "embedded/attached/jukebox/scsi_jukebox.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "embedded/model/refusal.h"
#include "tests/unit/attached/model/model_changer.h"
#include "tests/unit/attached/model/model_drive.h"
#include "tests/unit/attached/model/shared_transport.h"
#include "tests/unit/attached/scripted_device.h"

namespace embedded::attached {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Model = ModelChanger;
constexpr auto kInvert = embedded::Turning::Invert;
constexpr auto kKeep = embedded::Turning::Keep;

// SCSI operation codes (SMC-3, SPC-4).
constexpr uint8_t kMoveCode = 0xA5;
constexpr uint8_t kLookCode = 0xB8;
constexpr uint8_t kInventoryCode = 0x07;

constexpr uint16_t kDvdRom = 0x0010;
constexpr uint16_t kDvdRw = 0x0014;

// A drive that notes the time limits of its commands.
class WatchedDrive : public ModelDrive {
  public:
    using ModelDrive::ModelDrive;

    std::map<uint8_t, milliseconds> limits;
    std::vector<uint8_t> commands;

    Result<Completion> Send(const Command& command) override {
        limits[command.cdb[0]] = command.timeLimit;
        commands.push_back(command.cdb[0]);
        return ModelDrive::Send(command);
    }
};

class ScsiJukeboxTest : public testing::Test {
  protected:
    ScsiJukeboxTest() {
        m_address.name = "Tower";
        m_address.changer = {"changer", "CHG-1"};
        m_address.drives = {{"drive", ""}};
        m_address.reservationKey = 17;
    }

    PhysicalJukebox& Open() {
        m_jukebox = OpenScsiJukeboxWith(
            m_address,
            [this](const std::string& address, const IscsiLogin&) -> Result<std::unique_ptr<Transport>> {
                if (address == "changer")
                    return std::unique_ptr<Transport>(std::make_unique<SharedTransport>(m_changer));
                return std::unique_ptr<Transport>(std::make_unique<SharedTransport>(m_drive));
            },
            m_waiting);
        m_changer->commands.clear();
        return *m_jukebox;
    }

    ElementState StateOf(uint16_t address) {
        for (const ElementState& element : m_jukebox->LookAtElements()) {
            if (element.address == address) return element;
        }
        ADD_FAILURE() << "no element " << address;
        return {};
    }

    // What the operator is told when this fails.
    template <typename Work>
    static std::string Refused(const Work& work) {
        try {
            work();
        } catch (const embedded::Refusal& refusal) {
            return refusal.GetText();
        }
        return "not refused";
    }

    int64_t CountOf(uint8_t code) const { return std::ranges::count(m_changer->commands, code); }

    JukeboxAddress m_address;
    std::shared_ptr<Model> m_changer = std::make_shared<Model>();
    std::shared_ptr<WatchedDrive> m_drive = std::make_shared<WatchedDrive>("drive");
    TimelessWaiting m_waiting;
    std::unique_ptr<PhysicalJukebox> m_jukebox;
};

TEST_F(ScsiJukeboxTest, TellsWhatTheElementsHold) {
    m_changer->media[Model::kSlot + 1] = {"DISC-1", false, {}};
    m_changer->media[Model::kDrive] = {"DISC-2", true, Model::kSlot};
    m_changer->stuck[Model::kMailSlot] = {0x2, 0x83, 0x02};
    Open();
    EXPECT_EQ(m_jukebox->LookAtElements().size(), 1U + Model::kSlots + 1U + Model::kDrives);
    EXPECT_EQ(StateOf(Model::kSlot + 1).tag, "DISC-1");
    EXPECT_FALSE(StateOf(Model::kSlot + 1).source.has_value());
    EXPECT_TRUE(StateOf(Model::kDrive).isInverted);
    EXPECT_EQ(StateOf(Model::kDrive).source, Model::kSlot);
    EXPECT_EQ(
        StateOf(Model::kMailSlot).trouble,
        "it is not ready because a door is open or a magazine is missing; close the door and look at its "
        "panel (sense 2/83/02)");
}

TEST_F(ScsiJukeboxTest, TellsWhichElementsTheRobotCannotReach) {
    m_changer->outOfReach = {Model::kMailSlot, Model::kDrive};
    Open();
    EXPECT_EQ(StateOf(Model::kMailSlot).trouble, "the robot cannot reach it; close what is open");
    EXPECT_EQ(StateOf(Model::kDrive).trouble, "");
    EXPECT_EQ(StateOf(Model::kSlot).trouble, "");
    // A changer that never says so.
    for (uint16_t slot = 0; slot < Model::kSlots; ++slot)
        m_changer->outOfReach.insert(static_cast<uint16_t>(Model::kSlot + slot));
    EXPECT_EQ(StateOf(Model::kMailSlot).trouble, "");
}

TEST_F(ScsiJukeboxTest, TurnsMediaOver) {
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    Open().MoveMedium({Model::kSlot, Model::kDrive, kInvert});
    EXPECT_TRUE(StateOf(Model::kDrive).isInverted);
    m_jukebox->MoveMedium({Model::kDrive, Model::kSlot, kKeep});
    EXPECT_FALSE(StateOf(Model::kSlot).isInverted);
}

TEST_F(ScsiJukeboxTest, ReadsTheSideThatIsUp) {
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    // Side A is a pressed disc without a file system, side B a blank rewritable one.
    m_changer->onMove = [this](uint16_t, uint16_t, bool turns) {
        m_drive->profile = turns ? kDvdRw : kDvdRom;
        m_drive->sessions.clear();
        m_drive->blocks.clear();
        if (!turns) m_drive->Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
        m_drive->becomingReady = 4;
    };
    Open().MoveMedium({Model::kSlot, Model::kDrive, kKeep});
    EXPECT_EQ(m_jukebox->ReadSide(0).content, Content::NoFileSystem);
    m_jukebox->MoveMedium({Model::kDrive, Model::kSlot, kKeep});
    m_jukebox->MoveMedium({Model::kSlot, Model::kDrive, kInvert});
    EXPECT_EQ(m_jukebox->ReadSide(0).content, Content::Blank);
}

TEST_F(ScsiJukeboxTest, MovesAfterMediaMayHaveBeenChangedWhenTheMoveIsStillPossible) {
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    Open();
    m_changer->attentions = {{0x6, 0x28, 0x00}};
    m_jukebox->MoveMedium({Model::kSlot, Model::kDrive, kKeep});
    EXPECT_TRUE(m_changer->media.contains(Model::kDrive));
    EXPECT_EQ(CountOf(kMoveCode), 2);
    EXPECT_GE(CountOf(kLookCode), 4);
}

TEST_F(ScsiJukeboxTest, MovesNothingOtherThanWasMeantAfterMediaWereChanged) {
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    Open();
    // Somebody opens the door and takes the disc.
    m_changer->media.clear();
    m_changer->attentions = {{0x6, 0x28, 0x00}};
    EXPECT_EQ(Refused([&] {
                  m_jukebox->MoveMedium({Model::kSlot, Model::kDrive, kKeep});
              }),
              "The changer of jukebox \"Tower\" reports that media may have been changed (sense 6/28/00).");
    EXPECT_EQ(CountOf(kMoveCode), 1);
}

TEST_F(ScsiJukeboxTest, LooksAgainAfterUnitAttentionsAndWhileTheChangerIsBecomingReady) {
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    Open();
    m_changer->attentions = {{0x6, 0x29, 0x00}, {0x6, 0x28, 0x01}};
    m_changer->becomingReady = 3;
    EXPECT_EQ(StateOf(Model::kSlot).tag, "DISC-1");
    EXPECT_EQ(m_waiting.GetPaused(), milliseconds(100 + 200 + 400));
}

TEST_F(ScsiJukeboxTest, WaitsForAChangerThatIsBecomingReadyBeforeAMove) {
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    Open();
    m_changer->becomingReady = 5;
    m_jukebox->MoveMedium({Model::kSlot, Model::kDrive, kKeep});
    EXPECT_TRUE(m_changer->media.contains(Model::kDrive));
    EXPECT_EQ(m_waiting.GetPaused(), milliseconds(100 + 200 + 400 + 800 + 1600));
}

TEST_F(ScsiJukeboxTest, DoesNotRepeatAMoveWhoseEndIsNotKnown) {
    for (const ErrorKind kind : {ErrorKind::Lost, ErrorKind::TimedOut}) {
        m_changer->media = {{Model::kSlot, {"DISC-1", false, {}}}};
        Open();
        m_changer->lostMove = Error{kind, "the robot gave no answer", {}};
        EXPECT_EQ(Refused([&] {
                      m_jukebox->MoveMedium({Model::kSlot, Model::kDrive, kKeep});
                  }),
                  "The changer of jukebox \"Tower\": the robot gave no answer.");
        EXPECT_EQ(CountOf(kMoveCode), 1);
        // The next look tells, over a new connection.
        EXPECT_TRUE(StateOf(Model::kDrive).isFull);
    }
}

TEST_F(ScsiJukeboxTest, RefusesElementsThatTheChangerDoesNotHaveBeforeAnythingMoves) {
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    Open();
    const auto beyond = static_cast<uint16_t>(Model::kSlot + Model::kSlots);
    EXPECT_EQ(Refused([&] {
                  m_jukebox->MoveMedium({Model::kSlot, beyond, kKeep});
              }),
              "The changer of jukebox \"Tower\" has no element 1028.");
    EXPECT_EQ(Refused([&] {
                  m_jukebox->MoveMedium({0, Model::kSlot, kKeep});
              }),
              "The changer of jukebox \"Tower\" has no element 0.");
    EXPECT_EQ(CountOf(kMoveCode), 0);
}

TEST_F(ScsiJukeboxTest, TellsADriveToGiveItsDiscAway) {
    m_changer->media[Model::kDrive] = {"DISC-1", false, {}};
    m_drive->profile = kDvdRom;
    Open();
    m_changer->moveFailures = {{0x5, 0x53, 0x00}};
    // The model knows neither PREVENT ALLOW MEDIUM REMOVAL nor START STOP UNIT: it answers as it is told
    // here.
    m_drive->lies[0x1E] = {};
    m_drive->lies[0x1B] = {};
    m_jukebox->MoveMedium({Model::kDrive, Model::kSlot, kKeep});
    EXPECT_TRUE(m_changer->media.contains(Model::kSlot));
    EXPECT_EQ(std::ranges::count(m_drive->commands, uint8_t{0x1B}), 1);
}

TEST_F(ScsiJukeboxTest, SaysWhyADiscStaysInADrive) {
    m_changer->media[Model::kDrive] = {"DISC-1", false, {}};
    m_address.drives.clear();
    Open();
    m_changer->moveFailures = {{0x5, 0x53, 0x02}};
    EXPECT_EQ(
        Refused([&] {
            m_jukebox->MoveMedium({Model::kDrive, Model::kSlot, kKeep});
        }),
        "The changer of jukebox \"Tower\" is locked against taking the medium out; end the program that uses "
        "the drive (sense 5/53/02).");
}

TEST_F(ScsiJukeboxTest, RefusesAnotherDeviceAtTheAddressThatWasAttached) {
    m_changer->serialNumber = "CHG-2";
    EXPECT_EQ(
        Refused([&] { Open(); }),
        "The changer of jukebox \"Tower\" is no longer at changer: there is a device with the serial number "
        "\"CHG-2\" instead of \"CHG-1\"; attach it again.");
}

TEST_F(ScsiJukeboxTest, IsKeptFromOtherHostsWhileItIsHeld) {
    Open();
    {
        const std::unique_ptr<Hold> hold = m_jukebox->KeepOtherHostsAway();
        EXPECT_NE(hold, nullptr);
        EXPECT_EQ(m_changer->GetHolder(), 17U);
    }
    EXPECT_EQ(m_changer->GetHolder(), 0U);
    m_changer->otherHost = 99;
    EXPECT_EQ(Refused([&] { (void)m_jukebox->KeepOtherHostsAway(); }),
              "The changer of jukebox \"Tower\" is reserved by another host; end what runs there.");
    m_changer->knowsReservations = false;
    EXPECT_EQ(m_jukebox->KeepOtherHostsAway(), nullptr);
}

TEST_F(ScsiJukeboxTest, MakesTheChangerLookAtItsElementsAlsoAfterAChange) {
    Open();
    m_changer->attentions = {{0x6, 0x28, 0x00}};
    m_jukebox->TakeInventory();
    EXPECT_EQ(CountOf(kInventoryCode), 2);
}

TEST_F(ScsiJukeboxTest, GivesEachCommandTheTimeLimitOfItsKind) {
    TimeLimits& limits = m_address.limits;
    limits.move = seconds(601);
    limits.inventory = seconds(602);
    limits.eject = seconds(603);
    limits.ready = seconds(604);
    limits.look = seconds(605);
    limits.read = seconds(606);
    limits.write = seconds(607);
    limits.flush = seconds(608);
    limits.blank = seconds(609);
    m_changer->media[Model::kSlot] = {"DISC-1", false, {}};
    m_drive->profile = kDvdRw;
    m_drive->Hold(0, std::vector<uint8_t>(size_t{2048} * 64, 0x41));
    Open();
    (void)m_jukebox->LookAtElements();
    m_jukebox->TakeInventory();
    m_jukebox->MoveMedium({Model::kSlot, Model::kDrive, kKeep});
    (void)m_jukebox->ReadSide(0);
    EXPECT_EQ(m_jukebox->FormatSide(0, {"Archive", false}).trouble, "");
    m_drive->lies[0x1E] = {};
    m_drive->lies[0x1B] = {};
    m_changer->moveFailures = {{0x5, 0x53, 0x00}};
    m_jukebox->MoveMedium({Model::kDrive, Model::kSlot, kKeep});

    EXPECT_EQ(m_changer->limits.at(kMoveCode), limits.move);
    EXPECT_EQ(m_changer->limits.at(kInventoryCode), limits.inventory);
    for (const uint8_t code : {uint8_t{0x12}, uint8_t{0x1A}, kLookCode})
        EXPECT_EQ(m_changer->limits.at(code), limits.look) << int{code};
    for (const uint8_t code : Hex("12 25 46 51 52 55 5A 1E"))
        EXPECT_EQ(m_drive->limits.at(code), limits.look) << int{code};
    EXPECT_EQ(m_drive->limits.at(0x28), limits.read);
    EXPECT_EQ(m_drive->limits.at(0x2A), limits.write);
    EXPECT_EQ(m_drive->limits.at(0x35), limits.flush);
    EXPECT_EQ(m_drive->limits.at(0xA1), limits.blank);
    EXPECT_EQ(m_drive->limits.at(0x1B), limits.eject);
}

TEST_F(ScsiJukeboxTest, WaitsForALoadedDiscAsLongAsTheJukeboxIsGiven) {
    m_address.limits.ready = seconds(20);
    m_drive->profile = kDvdRom;
    m_drive->becomingReady = 1'000'000;
    Open();
    EXPECT_EQ(Refused([&] { (void)m_jukebox->ReadSide(0); }),
              "Drive 1 of jukebox \"Tower\" is becoming ready; try again in a minute (sense 2/04/01).");
    EXPECT_LE(m_waiting.GetPaused(), seconds(20) + m_address.limits.look);
    EXPECT_GE(m_waiting.GetPaused(), seconds(10));
}

}  // namespace
}  // namespace embedded::attached
