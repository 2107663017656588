// What a look at a real jukebox changes in the catalogue.
#include "embedded/catalogue/reconciliation.h"

#include <gtest/gtest.h>

namespace embedded_test {
namespace {

using embedded::ElementKind;
using embedded::ElementState;
using embedded::Intent;
using embedded::KnownElement;
using embedded::KnownJukebox;
using embedded::LoadedMedium;
using embedded::Placement;
using embedded::Reconcile;
using embedded::Reconciliation;
using embedded::Robot;

constexpr uint16_t kDrive = 256;
constexpr uint16_t kMailSlot = 768;
constexpr uint16_t kFirst = 1024;
constexpr uint16_t kSecond = 1025;

// A picker, a drive, a mail slot and two slots; all are empty.
class ReconciliationTest : public testing::Test {
  protected:
    void Know(uint16_t address, int64_t medium, const std::string& tag) {
        for (KnownElement& element : m_known.elements) {
            if (element.address != address) continue;
            element.medium = medium;
            element.tag = tag;
        }
    }
    ElementState& See(uint16_t address, const std::string& tag) {
        for (ElementState& element : m_seen) {
            if (element.address != address) continue;
            element.isFull = true;
            element.tag = tag;
            return element;
        }
        return m_seen.front();
    }
    Reconciliation Run(Robot robot = Robot::AtRest) const { return Reconcile(m_known, m_seen, robot); }

    KnownJukebox m_known{{{ElementKind::Picker, 1, true, 0, ""},
                          {ElementKind::Drive, kDrive, true, 0, ""},
                          {ElementKind::MailSlot, kMailSlot, true, 0, ""},
                          {ElementKind::Slot, kFirst, true, 0, ""},
                          {ElementKind::Slot, kSecond, true, 0, ""}},
                         std::nullopt};
    std::vector<ElementState> m_seen = {{ElementKind::Picker, 1, false, false, "", {}, ""},
                                        {ElementKind::Slot, kFirst, false, false, "", {}, ""},
                                        {ElementKind::Slot, kSecond, false, false, "", {}, ""},
                                        {ElementKind::MailSlot, kMailSlot, false, false, "", {}, ""},
                                        {ElementKind::Drive, kDrive, false, false, "", {}, ""}};
};

TEST_F(ReconciliationTest, ChangesNothingWhenBothAgree) {
    Know(kFirst, 7, "A1");
    See(kFirst, "A1");
    EXPECT_TRUE(Run().IsEmpty());
    EXPECT_TRUE(Run().loaded.empty());
}

TEST_F(ReconciliationTest, FindsAMovedMediumByItsBarcode) {
    Know(kFirst, 7, "A1");
    See(kSecond, "A1");
    EXPECT_EQ(Run().placed, (std::vector<Placement>{{7, kSecond, "A1", false}}));
    EXPECT_TRUE(Run().removed.empty());
}

TEST_F(ReconciliationTest, SwapsTwoMedia) {
    Know(kFirst, 7, "A1");
    Know(kSecond, 8, "A2");
    See(kFirst, "A2");
    See(kSecond, "A1");
    EXPECT_EQ(Run().placed, (std::vector<Placement>{{8, kFirst, "A2", false}, {7, kSecond, "A1", false}}));
}

TEST_F(ReconciliationTest, RemovesAMediumThatIsNowhere) {
    Know(kFirst, 7, "A1");
    EXPECT_EQ(Run().removed, std::vector<int64_t>{7});
}

TEST_F(ReconciliationTest, CountsAMediumWithoutABarcodeInAnotherSlotAsNew) {
    Know(kFirst, 7, "");
    See(kSecond, "");
    EXPECT_EQ(Run().placed, (std::vector<Placement>{{0, kSecond, "", false}}));
    EXPECT_EQ(Run().removed, std::vector<int64_t>{7});
}

TEST_F(ReconciliationTest, FinishesTheMoveThatWasBegun) {
    Know(kFirst, 7, "");
    See(kMailSlot, "");
    m_known.intent = Intent{7, kFirst, kMailSlot};
    EXPECT_EQ(Run().placed, (std::vector<Placement>{{7, kMailSlot, "", true}}));
    EXPECT_TRUE(Run().removed.empty());
}

TEST_F(ReconciliationTest, LeavesAMediumWhoseMoveDidNotHappen) {
    Know(kFirst, 7, "");
    See(kFirst, "");
    m_known.intent = Intent{7, kFirst, kMailSlot};
    EXPECT_TRUE(Run().IsEmpty());
}

TEST_F(ReconciliationTest, DoesNotTouchTheElementsOfAMoveThatGoesOn) {
    Know(kFirst, 7, "A1");
    m_known.intent = Intent{7, kFirst, kDrive};
    EXPECT_TRUE(Run(Robot::Moving).IsEmpty());
    See(kDrive, "A1");
    EXPECT_TRUE(Run(Robot::Moving).IsEmpty());
}

TEST_F(ReconciliationTest, LeavesAMediumInADriveItsSlot) {
    Know(kFirst, 7, "");
    See(kDrive, "").source = kFirst;
    EXPECT_TRUE(Run().IsEmpty());
    EXPECT_EQ(Run().loaded, (std::vector<LoadedMedium>{{kDrive, kFirst, false}}));
}

TEST_F(ReconciliationTest, GivesAMediumInADriveAnotherSlotWhenItsOwnIsTaken) {
    Know(kFirst, 7, "A1");
    See(kFirst, "A9");
    See(kDrive, "A1");
    EXPECT_EQ(Run().placed, (std::vector<Placement>{{7, kSecond, "A1", false}, {0, kFirst, "A9", false}}));
    EXPECT_EQ(Run().loaded, (std::vector<LoadedMedium>{{kDrive, kSecond, false}}));
}

TEST_F(ReconciliationTest, KeepsMediaOfAMagazineThatWasTakenOut) {
    Know(kFirst, 7, "A1");
    std::erase_if(m_seen, [](const ElementState& element) { return element.address == kFirst; });
    EXPECT_EQ(Run().disappeared, std::vector<uint16_t>{kFirst});
    EXPECT_TRUE(Run().removed.empty());
    See(kSecond, "A1");
    EXPECT_EQ(Run().placed, (std::vector<Placement>{{7, kSecond, "A1", false}}));
}

TEST_F(ReconciliationTest, LearnsTheBarcodeOfAMediumThatHadNone) {
    Know(kFirst, 7, "");
    See(kFirst, "A1");
    EXPECT_EQ(Run().tagged, (std::vector<embedded::Tagging>{{7, "A1"}}));
}

}  // namespace
}  // namespace embedded_test
