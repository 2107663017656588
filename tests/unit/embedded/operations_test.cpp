// The calls that handle media follow the same rules in a simulated jukebox and in a real one.
#include "embedded/operations/operation.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "embedded/catalogue/enable_disable_rename.h"
#include "embedded/catalogue/items.h"
#include "embedded/store/statement.h"
#include "tests/unit/embedded/support/attached_tower.h"
#include "tests/unit/embedded/support/simulated_tower.h"

namespace embedded_test {
namespace {

using embedded::Code;
using embedded::Content;
using embedded::Database;
using embedded::EraseOperation;
using embedded::ExportOperation;
using embedded::Finalization;
using embedded::FinalizeOperation;
using embedded::FormatOperation;
using embedded::ImportOperation;
using embedded::Operation;
using embedded::ScanOperation;
using embedded::SlotState;
using embedded::VolumeState;

using Labels = std::vector<std::string>;

constexpr int32_t kAnySlot = -1;
constexpr auto kDone = std::nullopt;

// A jukebox with four slots, whose discs have two sides.
class Tower {
  public:
    Tower() = default;
    Tower(const Tower&) = delete;
    Tower& operator=(const Tower&) = delete;
    virtual ~Tower() = default;

    // An empty label stands for a blank side. The service knows what is on the disc.
    virtual void PutIntoSlot(int32_t slot, const Labels& labels) = 0;
    virtual void PutIntoStation(const Labels& labels) = 0;
    virtual std::optional<Code> Do(std::unique_ptr<Operation> operation) = 0;
    virtual Database& GetDatabase() = 0;
};

class Simulated : public Tower {
  public:
    void PutIntoSlot(int32_t slot, const Labels& labels) override { m_tower.PutIntoSlot(slot, labels); }
    void PutIntoStation(const Labels& labels) override { m_tower.PutIntoStation(labels); }
    std::optional<Code> Do(std::unique_ptr<Operation> operation) override {
        return m_tower.Do(std::move(operation));
    }
    Database& GetDatabase() override { return m_tower.GetDatabase(); }

  private:
    SimulatedTower m_tower;
};

class Attached : public Tower {
  public:
    void PutIntoSlot(int32_t slot, const Labels& labels) override {
        m_tower.Put(static_cast<uint16_t>(Mechanics::kFirstSlot + slot), "S" + std::to_string(slot), labels);
        EXPECT_EQ(Do(ScanOperation(SideAt(slot, kBothSides))), kDone);
    }
    void PutIntoStation(const Labels& labels) override { m_tower.Put(Mechanics::kMailSlot, "M1", labels); }
    std::optional<Code> Do(std::unique_ptr<Operation> operation) override {
        return m_tower.Do(std::move(operation));
    }
    Database& GetDatabase() override { return m_tower.GetDatabase(); }

  private:
    AttachedTower m_tower;
};

struct Kind {
    const char* name;
    std::unique_ptr<Tower> (*make)();
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

class Operations : public FarmFixture, public testing::WithParamInterface<Kind> {
  protected:
    Database& GetDatabase() { return m_tower->GetDatabase(); }

    std::optional<Code> Do(std::unique_ptr<Operation> operation) { return m_tower->Do(std::move(operation)); }
    std::optional<Code> Format(int32_t slot, int32_t side, const std::string& label,
                               bool isSequential = false) {
        return Do(FormatOperation(SideAt(slot, side), {label, isSequential, false}));
    }

    embedded::Slot SlotOf(int32_t slot) { return FindSlot(GetDatabase(), {1, 0, slot}); }
    embedded::Side SideOf(int32_t slot, int32_t side) {
        return FindSide(GetDatabase(), *SlotOf(slot).medium, side).value_or(embedded::Side{});
    }
    embedded::Volume VolumeOn(int32_t slot, int32_t side) {
        return FindVolume(GetDatabase(), SideOf(slot, side).volume).value_or(embedded::Volume{});
    }
    Labels VolumeLabels() {
        return embedded::FindValues<std::string>(GetDatabase(),
                                                 R"sql(SELECT label FROM volume ORDER BY id)sql");
    }

    std::unique_ptr<Tower> m_tower = GetParam().make();
};

// ---- Import, export, scan

TEST_P(Operations, ImportPutsTheMediumOfTheStationIntoTheSlotAndAScanKnowsItsVolumes) {
    m_tower->PutIntoStation({"Front", "Back"});
    EXPECT_EQ(Do(ImportOperation(SlotAt(2))), kDone);
    EXPECT_TRUE(SlotOf(2).medium.has_value());
    EXPECT_EQ(Do(ScanOperation(SideAt(2, kBothSides))), kDone);
    EXPECT_EQ(SlotOf(2).state, SlotState::Full);
    EXPECT_EQ(VolumeLabels(), (Labels{"Front", "Back"}));
    EXPECT_GT(SideOf(2, kSideA).volume, 0);
    EXPECT_EQ(VolumeOn(2, kSideB).label, "Back");
    EXPECT_EQ(VolumeOn(2, kSideB).shownState, static_cast<int32_t>(VolumeState::Active));
}

TEST_P(Operations, ImportWithoutASlotTakesTheFirstEmptyOne) {
    m_tower->PutIntoSlot(0, {"There"});
    m_tower->PutIntoStation({"New"});
    EXPECT_EQ(Do(ImportOperation(SlotAt(kAnySlot))), kDone);
    EXPECT_TRUE(SlotOf(1).medium.has_value());
}

TEST_P(Operations, ImportNeedsAMediumAndAnEmptySlot) {
    m_tower->PutIntoSlot(0, {"There"});
    EXPECT_EQ(Do(ImportOperation(SlotAt(1))), Code::NoMedium);
    EXPECT_EQ(Do(ImportOperation(SlotAt(4))), Code::NoSlot);
    m_tower->PutIntoStation({"New"});
    EXPECT_EQ(Do(ImportOperation(SlotAt(0))), Code::SlotNotUsable);
    EXPECT_EQ(Do(ImportOperation(SlotAt(1))), kDone) << "it still waits";
}

TEST_P(Operations, ExportEmptiesTheSlotAndKeepsTheVolumesOffline) {
    m_tower->PutIntoSlot(1, {"Front", "Back"});
    EXPECT_EQ(Do(ExportOperation(SlotAt(kAnySlot))), kDone);
    EXPECT_EQ(SlotOf(1).state, SlotState::Empty);
    EXPECT_FALSE(SlotOf(1).medium.has_value());
    EXPECT_EQ(VolumeLabels(), (Labels{"Front", "Back"}));
    EXPECT_EQ(embedded::FindValues<int32_t>(GetDatabase(), R"sql(SELECT state FROM volume ORDER BY id)sql"),
              (std::vector<int32_t>{2, 2}));
}

TEST_P(Operations, ExportNeedsAMedium) {
    EXPECT_EQ(Do(ExportOperation(SlotAt(0))), Code::NoMedium);
    EXPECT_EQ(Do(ExportOperation(SlotAt(kAnySlot))), Code::AlreadySo);
}

TEST_P(Operations, ScanChangesNothingOnAMediumThatIsKnown) {
    m_tower->PutIntoSlot(0, {"Front", ""});
    const int32_t volume = SideOf(0, kSideA).volume;
    EXPECT_EQ(Do(ScanOperation(SideAt(0, kBothSides))), kDone);
    EXPECT_EQ(SideOf(0, kSideA).volume, volume);
    EXPECT_EQ(VolumeLabels(), Labels{"Front"});
    EXPECT_EQ(SlotOf(0).state, SlotState::Full);
}

TEST_P(Operations, ScanNeedsAMediumAndASide) {
    EXPECT_EQ(Do(ScanOperation(SideAt(0, kBothSides))), Code::NoMedium);
    EXPECT_EQ(Do(ScanOperation(SideAt(0, 3))), Code::NoSuchSide);
    EXPECT_EQ(Do(ScanOperation(SideAt(kAnySlot, kBothSides))), Code::NotANumberedItem);
}

// ---- Format, erase, finalize

TEST_P(Operations, FormatKeepsTheIdOfTheVolumeAndTakesTheLabel) {
    m_tower->PutIntoSlot(0, {"Old", "Back"});
    const int32_t volume = SideOf(0, kSideA).volume;
    EXPECT_EQ(Format(0, kSideA, "New"), kDone);
    EXPECT_EQ(SideOf(0, kSideA).volume, volume);
    EXPECT_EQ(VolumeLabels(), (Labels{"New", "Back"}));
}

TEST_P(Operations, FormatWithoutALabelKeepsTheOldOne) {
    m_tower->PutIntoSlot(0, {"Old"});
    EXPECT_EQ(Format(0, kSideA, ""), kDone);
    EXPECT_EQ(VolumeLabels(), Labels{"Old"});
}

TEST_P(Operations, FormatOfABlankSideMakesAVolumeOfTheSizeOfTheSide) {
    m_tower->PutIntoSlot(0, {"Front", ""});
    EXPECT_EQ(Format(0, kSideB, "New"), kDone);
    EXPECT_EQ(SideOf(0, kSideB).content, Content::FileSystem);
    EXPECT_EQ(SideOf(0, kSideB).finalization, Finalization::NotFinalized);
    EXPECT_EQ(VolumeOn(0, kSideB).label, "New");
    EXPECT_EQ(VolumeOn(0, kSideB).total, 4'700'000'000U);
    EXPECT_EQ(VolumeOn(0, kSideB).shownState, static_cast<int32_t>(VolumeState::Active));
    EXPECT_EQ(VolumeLabels(), (Labels{"Front", "New"}));
}

TEST_P(Operations, FormatTakesOneSide) {
    m_tower->PutIntoSlot(0, {"Front"});
    EXPECT_EQ(Format(0, kBothSides, "New"), Code::NoSuchSide);
    EXPECT_EQ(Format(0, kSideB, "New"), Code::NoSuchSide);
    EXPECT_EQ(Format(1, kSideA, "New"), Code::NoMedium);
    EXPECT_EQ(VolumeLabels(), Labels{"Front"});
}

TEST_P(Operations, EraseOfOneSideLeavesTheOther) {
    m_tower->PutIntoSlot(0, {"Front", "Back"});
    EXPECT_EQ(Do(EraseOperation(SideAt(0, kSideA))), kDone);
    EXPECT_EQ(SideOf(0, kSideA).content, Content::Blank);
    EXPECT_EQ(SideOf(0, kSideA).volume, 0);
    EXPECT_EQ(VolumeLabels(), Labels{"Back"});
}

TEST_P(Operations, EraseOfBothSidesTakesEveryVolume) {
    m_tower->PutIntoSlot(0, {"Front", "Back"});
    EXPECT_EQ(Do(EraseOperation(SideAt(0, kBothSides))), kDone);
    EXPECT_EQ(SideOf(0, kSideB).content, Content::Blank);
    EXPECT_TRUE(VolumeLabels().empty());
    EXPECT_EQ(SlotOf(0).state, SlotState::Full);
}

TEST_P(Operations, FinalizeClosesTheSideWithASequentialFileSystem) {
    m_tower->PutIntoSlot(0, {"Front", "Back"});
    EXPECT_EQ(Do(FinalizeOperation(SideAt(0, kBothSides))), Code::NotSequential);
    EXPECT_EQ(Format(0, kSideA, "New", /*isSequential=*/true), kDone);
    EXPECT_EQ(Do(FinalizeOperation(SideAt(0, kBothSides))), kDone);
    EXPECT_EQ(SideOf(0, kSideA).finalization, Finalization::Closed);
    EXPECT_NE(SideOf(0, kSideB).finalization, Finalization::Closed);
    EXPECT_EQ(VolumeLabels(), (Labels{"New", "Back"}));
    EXPECT_EQ(Do(FinalizeOperation(SideAt(0, kBothSides))), kDone) << "it is closed already";
    EXPECT_EQ(Format(0, kSideA, "Again"), Code::MediumClosed);
}

// ---- All of them

TEST_P(Operations, NothingMovesInADisabledJukebox) {
    m_tower->PutIntoSlot(0, {"Front"});
    m_tower->PutIntoStation({"New"});
    InTransaction(GetDatabase(), [&] {
        (void)EnableJukebox(GetDatabase(), {sizeof(JukeboxKey), 1}, embedded::Enabled::No);
    });
    EXPECT_EQ(Do(ImportOperation(SlotAt(1))), Code::JukeboxDisabled);
    EXPECT_EQ(Do(ExportOperation(SlotAt(0))), Code::JukeboxDisabled);
    EXPECT_EQ(Do(ScanOperation(SideAt(0, kBothSides))), Code::JukeboxDisabled);
    EXPECT_EQ(Format(0, kSideA, "New"), Code::JukeboxDisabled);
    EXPECT_EQ(Do(EraseOperation(SideAt(0, kSideA))), Code::JukeboxDisabled);
    EXPECT_EQ(Do(FinalizeOperation(SideAt(0, kBothSides))), Code::JukeboxDisabled);
    EXPECT_TRUE(SlotOf(0).medium.has_value());
    EXPECT_EQ(VolumeOn(0, kSideA).label, "Front");
}

INSTANTIATE_TEST_SUITE_P(
    InEveryKindOfJukebox, Operations,
    testing::Values(
        Kind{"Simulated", []() -> std::unique_ptr<Tower> { return std::make_unique<Simulated>(); }},
        Kind{"Attached", []() -> std::unique_ptr<Tower> { return std::make_unique<Attached>(); }}),
    [](const testing::TestParamInfo<Kind>& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace embedded_test
