// The calls on a real jukebox whose mechanics are a model: both sides, failures, crashes, other hosts.
#include "embedded/mechanics/attached_farm.h"

#include <optional>

#include "embedded/catalogue/items.h"
#include "embedded/store/statement.h"
#include "tests/unit/embedded/support/attached_tower.h"

namespace embedded_test {
namespace {

using embedded::Code;
using embedded::Content;
using embedded::Database;
using embedded::EraseOperation;
using embedded::ExportOperation;
using embedded::FormatOperation;
using embedded::ImportOperation;
using embedded::Operation;
using embedded::Recording;
using embedded::ScanOperation;
using embedded::SlotState;

using Fault = Mechanics::Fault;

constexpr int32_t kTower = AttachedTower::kNumber;
constexpr uint16_t kFirstSlot = Mechanics::kFirstSlot;

class AttachedFarmTest : public FarmFixture {
  protected:
    void Restart() { m_tower.Restart(); }
    void Put(uint16_t element, const std::string& tag, const std::vector<std::string>& labels) {
        m_tower.Put(element, tag, labels);
    }
    std::optional<Code> Scan(int32_t slot, int32_t side) {
        return m_tower.Do(ScanOperation(SideAt(slot, side)));
    }
    std::optional<Code> Format(int32_t slot, int32_t side, const std::string& label) {
        return m_tower.Do(FormatOperation(SideAt(slot, side), {label, false, false}));
    }

    std::vector<std::string> Labels() {
        return embedded::FindValues<std::string>(m_database, R"sql(SELECT label FROM volume ORDER BY id)sql");
    }
    SlotState StateOf(int32_t slot) { return FindSlot(m_database, {kTower, 0, slot}).state; }

    // All that the catalogue knows: barcodes and places.
    std::vector<std::string> Media() {
        return embedded::FindValues<std::string>(m_database, R"sql(
            SELECT k.tag || CASE m.place WHEN 1 THEN ' in slot ' ELSE ' elsewhere ' END || m.slot
            FROM medium m CROSS JOIN known_medium k ON k.medium = m.id ORDER BY m.id
        )sql");
    }
    // The discs by element, with their barcodes.
    std::map<uint16_t, std::string> Places() const {
        std::map<uint16_t, std::string> places;
        for (const auto& [element, disc] : m_mechanics.GetDiscs())
            places[element] = disc.tag;
        return places;
    }
    void ExpectAllSideAUp() const {
        for (const auto& [element, disc] : m_mechanics.GetDiscs())
            EXPECT_FALSE(disc.isUpsideDown) << disc.tag;
    }
    // The catalogue says where every disc is.
    void ExpectAgreement() {
        const auto seen = m_tower.GetFarm().Open(kTower).LookAtElements();
        EXPECT_FALSE(Differs(m_database, {kTower, seen, embedded::Robot::AtRest}));
    }

    AttachedTower m_tower;
    Mechanics& m_mechanics = m_tower.GetMechanics();
    Database& m_database = m_tower.GetDatabase();
};

TEST_F(AttachedFarmTest, ReadsBothSidesAndBringsTheDiscHomeAsItWas) {
    Put(kFirstSlot, "A1", {"Front", "Back"});
    EXPECT_EQ(Scan(0, kBothSides), std::nullopt);
    EXPECT_EQ(Labels(), (std::vector<std::string>{"Front", "Back"}));
    EXPECT_EQ(Places(), (std::map<uint16_t, std::string>{{kFirstSlot, "A1"}}));
    ExpectAllSideAUp();
    ExpectAgreement();
}

TEST_F(AttachedFarmTest, ReadsOnlyTheSideThatIsNamed) {
    Put(kFirstSlot, "A1", {"Front", "Back"});
    EXPECT_EQ(Scan(0, kSideB), std::nullopt);
    EXPECT_EQ(Labels(), std::vector<std::string>{"Back"});
    ExpectAllSideAUp();
}

TEST_F(AttachedFarmTest, CountsADiscOnceThatIsTheSameFromBothSides) {
    Put(kFirstSlot, "A1", {"Only"});
    EXPECT_EQ(Scan(0, kBothSides), std::nullopt);
    EXPECT_EQ(Labels(), std::vector<std::string>{"Only"});
}

TEST_F(AttachedFarmTest, FormatsTheSecondSideAndLeavesTheFirst) {
    Put(kFirstSlot, "A1", {"Front", ""});
    EXPECT_EQ(Scan(0, kBothSides), std::nullopt);
    EXPECT_EQ(Format(0, kSideB, "New"), std::nullopt);
    EXPECT_EQ(Labels(), (std::vector<std::string>{"Front", "New"}));
    EXPECT_EQ(m_mechanics.GetDiscs().at(kFirstSlot).sides[1].label, "New");
    ExpectAllSideAUp();
}

TEST_F(AttachedFarmTest, FormatsADiscThatNobodyHasReadYet) {
    Put(kFirstSlot, "A1", {""});
    EXPECT_EQ(Format(0, kSideA, "New"), std::nullopt);
    EXPECT_EQ(Labels(), std::vector<std::string>{"New"});
    EXPECT_EQ(StateOf(0), SlotState::Full);
}

TEST_F(AttachedFarmTest, KeepsTheVolumeThatIsFormattedAgain) {
    Put(kFirstSlot, "A1", {"Old"});
    EXPECT_EQ(Scan(0, kSideA), std::nullopt);
    const auto ids = embedded::FindValues<int32_t>(m_database, R"sql(SELECT id FROM volume)sql");
    EXPECT_EQ(Format(0, kSideA, "New"), std::nullopt);
    EXPECT_EQ(embedded::FindValues<int32_t>(m_database, R"sql(SELECT id FROM volume)sql"), ids);
}

TEST_F(AttachedFarmTest, ForgetsTheVolumeOfASideThatIsErased) {
    Put(kFirstSlot, "A1", {"Front", "Back"});
    EXPECT_EQ(Scan(0, kBothSides), std::nullopt);
    EXPECT_EQ(m_tower.Do(EraseOperation(SideAt(0, kSideA))), std::nullopt);
    EXPECT_EQ(Labels(), std::vector<std::string>{"Back"});
    EXPECT_EQ(m_mechanics.GetDiscs().at(kFirstSlot).sides[0].content, Content::Blank);
}

TEST_F(AttachedFarmTest, PutsADiscThatIsInADriveIntoASlotFirst) {
    Put(kFirstSlot, "A1", {"Front"});
    m_mechanics.Put(Mechanics::kFirstDrive, {"X9", {Mechanics::Recorded("Strange")}, false, 0});
    EXPECT_EQ(Scan(0, kSideA), std::nullopt);
    EXPECT_EQ(Places(), (std::map<uint16_t, std::string>{{kFirstSlot, "A1"}, {kFirstSlot + 1, "X9"}}));
    ExpectAgreement();
}

TEST_F(AttachedFarmTest, UsesTheOtherDriveWhileADiscIsStuckInOne) {
    Put(kFirstSlot, "A1", {"Front"});
    m_mechanics.Put(Mechanics::kFirstDrive, {"X9", {Mechanics::Recorded("Strange")}, false, 0});
    m_mechanics.Jam(Mechanics::kFirstDrive);
    EXPECT_EQ(Scan(0, kSideA), std::nullopt);
    EXPECT_EQ(Labels(), std::vector<std::string>{"Front"});
    EXPECT_EQ(Places(),
              (std::map<uint16_t, std::string>{{kFirstSlot, "A1"}, {Mechanics::kFirstDrive, "X9"}}));
}

TEST_F(AttachedFarmTest, RefusesADiscWhenNoDriveIsFree) {
    Put(kFirstSlot, "A1", {"Front"});
    for (const uint16_t drive : {Mechanics::kFirstDrive, uint16_t{Mechanics::kFirstDrive + 1}}) {
        m_mechanics.Put(drive, {"X" + std::to_string(drive), {Mechanics::Recorded("Strange")}, false, 0});
        m_mechanics.Jam(drive);
    }
    EXPECT_EQ(Scan(0, kSideA), Code::NoUsableDrive);
    EXPECT_EQ(m_mechanics.GetMoves(), 0);
}

TEST_F(AttachedFarmTest, BringsHomeTheDiscThatTheDriveCannotRead) {
    Put(kFirstSlot, "A1", {"Front"});
    m_mechanics.Fail(Fault::Reading);
    EXPECT_EQ(Scan(0, kSideA), Code::DeviceTrouble);
    EXPECT_EQ(Places(), (std::map<uint16_t, std::string>{{kFirstSlot, "A1"}}));
    EXPECT_EQ(StateOf(0), SlotState::Unknown);
    ExpectAgreement();
}

TEST_F(AttachedFarmTest, LooksWhereTheDiscIsAfterALostAnswer) {
    Put(Mechanics::kMailSlot, "A1", {"Front"});
    m_mechanics.Fail(Fault::AfterMove);
    EXPECT_EQ(m_tower.Do(ImportOperation(SlotAt(2))), Code::DeviceTrouble);
    EXPECT_EQ(Places(), (std::map<uint16_t, std::string>{{kFirstSlot + 2, "A1"}}));
    EXPECT_EQ(m_mechanics.GetMoves(), 1);
    ExpectAgreement();
}

TEST_F(AttachedFarmTest, CountsAsUnknownWhatWasBeingWrittenWhenTheDriveStopped) {
    Put(kFirstSlot, "A1", {""});
    EXPECT_EQ(Scan(0, kSideA), std::nullopt);
    m_mechanics.Fail(Fault::WritingStuck);
    EXPECT_EQ(Format(0, kSideA, "New"), Code::DeviceTrouble);
    EXPECT_EQ(StateOf(0), SlotState::Unknown);
    EXPECT_TRUE(Labels().empty());
}

TEST_F(AttachedFarmTest, CountsASideAsBadThatTakesNoData) {
    Put(kFirstSlot, "A1", {"", "Back"});
    EXPECT_EQ(Scan(0, kBothSides), std::nullopt);
    m_mechanics.Fail(Fault::WritingBad);
    EXPECT_EQ(Format(0, kSideA, "New"), Code::DeviceTrouble);
    const embedded::Medium medium = *FindSlot(m_database, {kTower, 0, 0}).medium;
    EXPECT_EQ(FindSide(m_database, medium, kSideA)->content, Content::Bad);
    EXPECT_EQ(Labels(), std::vector<std::string>{"Back"});
}

TEST_F(AttachedFarmTest, MovesNothingWhileAnotherHostHoldsTheChanger) {
    Put(kFirstSlot, "A1", {"Front"});
    m_mechanics.Fail(Fault::OtherHost);
    EXPECT_EQ(Scan(0, kSideA), Code::DeviceTrouble);
    EXPECT_EQ(m_mechanics.GetMoves(), 0);
}

TEST_F(AttachedFarmTest, HoldsTheChangerUntilTheCallIsRecorded) {
    Put(kFirstSlot, "A1", {"Front"});
    m_mechanics.OnMove([this] { EXPECT_TRUE(m_mechanics.IsHeld()); });
    {
        const Recording record = m_tower.GetFarm().Do(ScanOperation(SideAt(0, kSideA)));
        EXPECT_TRUE(m_mechanics.IsHeld());
        InTransaction(m_database, [&] { (void)record(m_database); });
    }
    EXPECT_FALSE(m_mechanics.IsHeld());
}

TEST_F(AttachedFarmTest, KnowsTheVolumesOfADiscThatComesBack) {
    Put(kFirstSlot, "A1", {"Front", "Back"});
    EXPECT_EQ(Scan(0, kBothSides), std::nullopt);
    EXPECT_EQ(m_tower.Do(ExportOperation(SlotAt(0))), std::nullopt);
    EXPECT_EQ(m_tower.Do(ImportOperation(SlotAt(3))), std::nullopt);
    EXPECT_EQ(Places(), (std::map<uint16_t, std::string>{{kFirstSlot + 3, "A1"}}));
    EXPECT_EQ(StateOf(3), SlotState::Full);
    EXPECT_EQ(Scan(3, kBothSides), std::nullopt);
    EXPECT_EQ(Labels(), (std::vector<std::string>{"Front", "Back"}));
}

TEST_F(AttachedFarmTest, CountsTwoDiscsWithTheSameFileSystemAsTwoVolumes) {
    for (const std::string tag : {"A1", ""}) {
        Put(kFirstSlot, tag, {"Front"});
        Put(kFirstSlot + 1, tag.empty() ? "" : "B2", {"Front"});
        EXPECT_EQ(Scan(0, kSideA), std::nullopt);
        EXPECT_EQ(Scan(1, kSideA), std::nullopt);
        EXPECT_EQ(StateOf(0), SlotState::Full);
        EXPECT_EQ(StateOf(1), SlotState::Full);
        EXPECT_GE(Labels().size(), 2U);
        const auto reached = embedded::FindValues<int32_t>(m_database, R"sql(
            SELECT i.volume FROM side i CROSS JOIN medium d ON d.id = i.medium WHERE d.place = 1 AND i.volume > 0
        )sql");
        ASSERT_EQ(reached.size(), 2U) << "tag " << tag;
        EXPECT_NE(reached[0], reached[1]);
    }
}

TEST_F(AttachedFarmTest, KnowsTheVolumeOfADiscWithoutABarcodeByItsFileSystem) {
    Put(kFirstSlot, "", {"Front"});
    EXPECT_EQ(Scan(0, kSideA), std::nullopt);
    const auto ids = embedded::FindValues<int32_t>(m_database, R"sql(SELECT id FROM volume)sql");
    m_mechanics = Mechanics(2);
    m_tower.GetFarm().LookAtAll();
    Put(kFirstSlot + 3, "", {"Front"});
    EXPECT_EQ(Scan(3, kSideA), std::nullopt);
    EXPECT_EQ(embedded::FindValues<int32_t>(m_database, R"sql(SELECT id FROM volume)sql"), ids);
    Put(kFirstSlot + 2, "", {"Other"});
    EXPECT_EQ(Scan(2, kSideA), std::nullopt);
    EXPECT_EQ(Labels(), (std::vector<std::string>{"Front", "Other"}));
}

TEST_F(AttachedFarmTest, WaitsForTheDiscThatARobotStillMovesForADeadProcess) {
    Put(Mechanics::kMailSlot, "A1", {"Front"});
    m_mechanics.Fail(Fault::CrashInFlight);
    EXPECT_THROW((void)m_tower.GetFarm().Do(ImportOperation(SlotAt(2))), Mechanics::Crash);
    Restart();
    EXPECT_EQ(Media(), (std::vector<std::string>{"A1 in slot 2"}));
}

TEST_F(AttachedFarmTest, CountsADiscOnceThatArrivesWithinALook) {
    Put(Mechanics::kMailSlot, "A1", {"Front"});
    m_mechanics.Fail(Fault::CrashAtArrival);
    EXPECT_THROW((void)m_tower.GetFarm().Do(ImportOperation(SlotAt(2))), Mechanics::Crash);
    Restart();
    EXPECT_EQ(Media(), (std::vector<std::string>{"A1 in slot 2"}));
}

// A call and the moves that it makes, and where the disc is when the call was not made.
struct CrashCase {
    const char* name;
    uint16_t from;
    int moves;
    std::unique_ptr<Operation> (*operation)();
};

void PrintTo(const CrashCase& tried, std::ostream* out) {
    *out << tried.name;
}

class AttachedFarmCrashes : public AttachedFarmTest, public testing::WithParamInterface<CrashCase> {};

// The process ends before or after any move of a call. The next one brings the disc home and knows where it
// is.
TEST_P(AttachedFarmCrashes, LoseNoDisc) {
    for (int move = 0; move < GetParam().moves; ++move) {
        for (const Fault fault : {Fault::CrashBeforeMove, Fault::CrashAfterMove}) {
            SCOPED_TRACE(std::to_string(move) + (fault == Fault::CrashAfterMove ? " after" : " before"));
            m_mechanics = Mechanics(2);
            Put(GetParam().from, "A1", {"Front", "Back"});
            m_mechanics.Fail(fault, move);
            EXPECT_THROW((void)m_tower.GetFarm().Do(GetParam().operation()), Mechanics::Crash);
            Restart();
            m_tower.GetFarm().TakeInventory(kTower);
            ASSERT_EQ(m_mechanics.GetDiscs().size(), 1U);
            const uint16_t element = m_mechanics.GetDiscs().begin()->first;
            EXPECT_GE(element, Mechanics::kMailSlot) << "left in a drive";
            ExpectAllSideAUp();
            ExpectAgreement();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Calls, AttachedFarmCrashes,
    testing::Values(CrashCase{"Import", Mechanics::kMailSlot, 1, [] { return ImportOperation(SlotAt(2)); }},
                    CrashCase{"Export", kFirstSlot, 1, [] { return ExportOperation(SlotAt(0)); }},
                    CrashCase{"Scan", kFirstSlot, 4, [] { return ScanOperation(SideAt(0, kBothSides)); }},
                    CrashCase{"Format", kFirstSlot, 4,
                              [] {
                                  return FormatOperation(SideAt(0, kSideB), {"New", false, false});
                              }}),
    [](const testing::TestParamInfo<CrashCase>& tried) { return std::string(tried.param.name); });

}  // namespace
}  // namespace embedded_test
