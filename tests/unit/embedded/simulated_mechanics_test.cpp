// What happens physically in a simulated jukebox, without what the service makes of it.
#include "embedded/simulated/mechanics/simulated_mechanics.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/catalogue/items.h"
#include "embedded/store/statement.h"
#include "tests/unit/embedded/support/model_jukebox.h"
#include "tests/unit/embedded/support/simulated_tower.h"

namespace embedded_test {
namespace {

using embedded::Content;
using embedded::Finalization;
using embedded::ReadSide;
using embedded::SideReading;
using embedded::SlotState;
using embedded::WritePlan;
using embedded::WriteTask;

constexpr uint32_t kDvdRam = Mechanics::kDvdRam;
constexpr uint64_t kDvdRamBytes = 4'700'000'000;

class SimulatedMechanicsTest : public FarmFixture {
  protected:
    embedded::Slot SlotOf(int32_t slot) { return FindSlot(m_tower.GetDatabase(), {1, 0, slot}); }

    embedded::Transfer Waiting(int32_t slot) {
        const auto medium = embedded::FindValue<int64_t>(
            m_tower.GetDatabase(), R"sql(SELECT id FROM medium WHERE place = 2 ORDER BY slot)sql");
        return {{medium.value_or(0), kDvdRam}, {1, 0, slot}};
    }
    std::vector<int32_t> VolumeNumbers() {
        return embedded::FindValues<int32_t>(m_tower.GetDatabase(),
                                             R"sql(SELECT id FROM volume ORDER BY id)sql");
    }

    // What the sides of the medium in slot 0 are after they were written.
    std::vector<ReadSide> Write(WritePlan plan) {
        plan.slot = SlotOf(0);
        plan.sides = FindSides(m_tower.GetDatabase(), *plan.slot.medium);
        const embedded::WrittenSides written = m_mechanics.Write(plan);
        EXPECT_EQ(written.end.side, embedded::SideAfter::Done);
        return written.sides;
    }

    SimulatedTower m_tower;
    embedded::SimulatedMechanics m_mechanics{m_tower.GetDatabase()};
};

TEST_F(SimulatedMechanicsTest, ReadsWhatIsOnEachSide) {
    m_tower.PutIntoSlot(0, {"Front", ""});
    const std::vector<ReadSide> sides = m_mechanics.Read(SlotOf(0), embedded::kBothSides);
    ASSERT_EQ(sides.size(), 2U);
    const SideReading& front = sides[0].reading;
    EXPECT_EQ(sides[0].side, 0);
    EXPECT_EQ(front.mediumType, kDvdRam);
    EXPECT_EQ(front.content, Content::FileSystem);
    EXPECT_EQ(front.finalization, Finalization::NotFinalized);
    EXPECT_EQ(front.fileSystem, "UDF");
    EXPECT_EQ(front.label, "Front");
    EXPECT_EQ(front.total, kDvdRamBytes);
    EXPECT_EQ(front.free, kDvdRamBytes);
    EXPECT_EQ(sides[1].side, 1);
    EXPECT_EQ(sides[1].reading.content, Content::Blank);
    EXPECT_EQ(sides[1].reading.label, "");
}

TEST_F(SimulatedMechanicsTest, ReadsOnlyTheSideThatIsNamed) {
    m_tower.PutIntoSlot(0, {"Front", "Back"});
    const std::vector<ReadSide> sides = m_mechanics.Read(SlotOf(0), 1);
    ASSERT_EQ(sides.size(), 1U);
    EXPECT_EQ(sides[0].side, 1);
    EXPECT_EQ(sides[0].reading.label, "Back");
}

TEST_F(SimulatedMechanicsTest, ReadsNothingInAnEmptySlot) {
    EXPECT_TRUE(m_mechanics.Read(SlotOf(0), embedded::kBothSides).empty());
}

TEST_F(SimulatedMechanicsTest, ReadsAMediumThatItImportsAndLeavesItsVolumesToTheService) {
    m_tower.PutIntoStation({"New"});
    const std::vector<ReadSide> sides = m_mechanics.Import(Waiting(2));
    ASSERT_EQ(sides.size(), 1U);
    EXPECT_EQ(sides[0].reading.label, "New");
    EXPECT_TRUE(SlotOf(2).medium.has_value());
    EXPECT_EQ(SlotOf(2).state, SlotState::Empty) << "nobody has recorded it";
    EXPECT_EQ(VolumeNumbers(), std::vector<int32_t>{-1});
}

TEST_F(SimulatedMechanicsTest, ExportsToTheEndOfTheStation) {
    m_tower.PutIntoSlot(0, {"First"});
    m_tower.PutIntoSlot(1, {"Second"});
    for (const int32_t slot : {1, 0})
        m_mechanics.Export({*SlotOf(slot).medium, {1, 0, slot}});
    EXPECT_EQ(embedded::FindValues<std::string>(m_tower.GetDatabase(), R"sql(
                  SELECT v.label FROM medium d CROSS JOIN side i ON i.medium = d.id
                  CROSS JOIN volume v ON v.id = i.volume WHERE d.place = 3 ORDER BY d.slot
              )sql"),
              (std::vector<std::string>{"Second", "First"}));
}

TEST_F(SimulatedMechanicsTest, FormatsWithTheFileSystemAndTheCapacityOfTheMedium) {
    m_tower.PutIntoSlot(0, {""});
    WritePlan plan;
    plan.label = "New";
    const SideReading random = Write(plan).at(0).reading;
    EXPECT_EQ(random.content, Content::FileSystem);
    EXPECT_EQ(random.fileSystem, "UDF 2.01");
    EXPECT_EQ(random.label, "New");
    EXPECT_EQ(random.finalization, Finalization::NotFinalized);
    EXPECT_EQ(random.total, kDvdRamBytes);
    EXPECT_EQ(random.free, kDvdRamBytes);
    plan.isSequential = true;
    const SideReading sequential = Write(plan).at(0).reading;
    EXPECT_EQ(sequential.fileSystem, "UDF 1.50 seq");
    EXPECT_TRUE(sequential.isSequential);
}

TEST_F(SimulatedMechanicsTest, ErasesEverySideOfThePlan) {
    m_tower.PutIntoSlot(0, {"Front", "Back"});
    WritePlan plan;
    plan.task = WriteTask::Erase;
    const std::vector<ReadSide> sides = Write(plan);
    ASSERT_EQ(sides.size(), 2U);
    for (const ReadSide& side : sides) {
        EXPECT_EQ(side.reading.content, Content::Blank);
        EXPECT_EQ(side.reading.finalization, Finalization::NotFinalized);
    }
}

TEST_F(SimulatedMechanicsTest, ClosesSidesAndKeepsWhatIsOnThem) {
    m_tower.PutIntoSlot(0, {"Front"});
    WritePlan plan;
    plan.task = WriteTask::Finalize;
    const SideReading closed = Write(plan).at(0).reading;
    EXPECT_EQ(closed.finalization, Finalization::Closed);
    EXPECT_EQ(closed.content, Content::FileSystem);
}

}  // namespace
}  // namespace embedded_test
