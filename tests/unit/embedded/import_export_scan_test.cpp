// Import, export and scan: what they move, what they refuse, and with which code.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

constexpr Slot kFreeSlot{29, 1, 2};  // of Sales Tower, where five media wait
constexpr uint32_t kActive = 0;
constexpr uint32_t kOffline = 2;

class ImportExportScan : public FarmFixture {
  protected:
    void ExportAll(int32_t jukebox, int32_t magazine, int32_t slots) {
        for (int32_t slot = 0; slot < slots; ++slot)
            (void)m_client.Export({jukebox, magazine, slot});
    }

    Client m_client;
};

// ---- Import

TEST_F(ImportExportScan, ImportPutsTheNextWaitingMediumIntoTheSlot) {
    EXPECT_TRUE(m_client.Import(kFreeSlot).ok);
    SlotRecord slot{};
    ASSERT_TRUE(m_client.GetSlot(kFreeSlot, slot).ok);
    EXPECT_EQ(slot.state, 4U);
    EXPECT_EQ(slot.mediumCode, 12U) << "the DVD-RAM waits in front";
}

TEST_F(ImportExportScan, ImportedNewVolumeGetsTheNextIdAndIsOnline) {
    ASSERT_TRUE(m_client.Import(kFreeSlot).ok);
    const SideRecord side = m_client.SideOf(kFreeSlot, 0);
    EXPECT_EQ(side.volumeId, 600) << "the layout's next_volume";
    EXPECT_EQ(m_client.LabelOf(600), "Sales 2006");
    EXPECT_EQ(m_client.VolumeOf(600).state, kActive);
    EXPECT_EQ(m_client.Volumes().back(), 600U);
    EXPECT_EQ(m_client.SideOf(kFreeSlot, 1).state, 4U) << "the other side is blank";
}

TEST_F(ImportExportScan, WaitingMediaComeInTheirOrder) {
    const std::vector<uint32_t> waiting = {12, 26, 20, 1, 9};  // as the layout lists them
    int32_t slot = 0;
    for (const uint32_t type : waiting) {
        ASSERT_TRUE(m_client.Import({29, 2, slot}).ok);
        SlotRecord record{};
        ASSERT_TRUE(m_client.GetSlot({29, 2, slot++}, record).ok);
        EXPECT_EQ(record.mediumCode, type);
    }
    EXPECT_EQ(Describe(m_client.Import({29, 2, 5})),
              "501: There is no medium in the import station of jukebox \"Sales Tower\".");
}

TEST_F(ImportExportScan, ImportBringsKnownVolumesBackOnline) {
    EXPECT_EQ(m_client.VolumeOf(402).state, kOffline);
    for (int32_t slot = 0; slot < 3; ++slot)
        ASSERT_TRUE(m_client.Import({29, 2, slot}).ok);
    EXPECT_EQ(m_client.VolumeOf(402).state, kActive);
    EXPECT_EQ(m_client.VolumeOf(403).state, kActive);
    std::vector<SideKey> locations;
    ASSERT_TRUE(m_client.Locations(403, locations).ok);
    EXPECT_EQ(locations[0].slot, 2);
    EXPECT_EQ(locations[0].side, 1);
}

struct RefusedMove {
    const char* what;
    Slot slot;
    const char* expected;
};

TEST_F(ImportExportScan, ImportIsRefusedWhereNothingCanBePut) {
    const std::vector<RefusedMove> cases = {
        {"occupied", {29, 1, 0}, "502: Slot 1 of magazine 2 in jukebox \"Sales Tower\" is not empty."},
        {"no such slot", {29, 1, 6}, "1103: Magazine 2 of jukebox \"Sales Tower\" has no slot 7."},
        {"no such magazine", {29, 3, 0}, "1101: Jukebox \"Sales Tower\" has no magazine 4."},
        {"no such jukebox", {30, 0, 0}, "1100: There is no jukebox with ID 30."},
        {"station empty", {14, 0, 2}, "501: There is no medium in the import station of jukebox \"My Box\"."},
        {"disabled", {41, 0, 1}, "1200: Jukebox \"Retired\" is disabled, its media cannot be moved."},
    };
    for (const RefusedMove& refused : cases) {
        EXPECT_EQ(Describe(m_client.Import(refused.slot)), refused.expected) << refused.what;
    }
    EXPECT_EQ(m_client.SlotState(kFreeSlot), 3U);
    ASSERT_TRUE(m_client.Import(kFreeSlot).ok);
    EXPECT_EQ(m_client.SideOf(kFreeSlot, 0).volumeId, 600) << "no refused call has taken the first medium";
}

TEST_F(ImportExportScan, ImportIntoAMissingMagazineIsCode502) {
    ASSERT_TRUE(m_client.DisableMagazine(29, 2).ok);
    EXPECT_EQ(Describe(m_client.Import({29, 2, 0})),
              "502: Magazine 3 of jukebox \"Sales Tower\" is not present.");
    EXPECT_EQ(m_client.Import({29, 2, -1}).code, 502);
}

TEST_F(ImportExportScan, ImportWithoutASlotTakesTheFirstEmptyOne) {
    ASSERT_TRUE(m_client.Import({29, -1, -1}).ok);
    EXPECT_EQ(m_client.SlotState({29, 0, 3}), 4U) << "magazine 1 has its first gap at slot 4";
    ASSERT_TRUE(m_client.Import({29, 2, -1}).ok);
    EXPECT_EQ(m_client.SlotState({29, 2, 0}), 4U);
}

TEST_F(ImportExportScan, ImportToAFullMagazineIsCode4) {
    for (int32_t slot : {2, 4, 5})
        ASSERT_TRUE(m_client.Import({29, 1, slot}).ok);
    EXPECT_EQ(Describe(m_client.Import({29, 1, -1})),
              "4: Magazine 2 of jukebox \"Sales Tower\" is already full.");
}

TEST_F(ImportExportScan, ImportByAbsoluteSlotNumberReachesTheSameSlot) {
    ASSERT_TRUE(m_client.Import({29, -1, 8}).ok);  // 6 slots of magazine 1, then slot 3 of magazine 2
    EXPECT_EQ(m_client.SlotState({29, 1, 2}), 4U);
}

// ---- Export

TEST_F(ImportExportScan, ExportEmptiesTheSlotAndKeepsTheVolumeOffline) {
    EXPECT_TRUE(m_client.Export({8, 0, 2}).ok);
    SlotRecord slot{};
    ASSERT_TRUE(m_client.GetSlot({8, 0, 2}, slot).ok);
    EXPECT_EQ(slot.state, 3U);
    EXPECT_EQ(slot.mediumCode, 255U);
    EXPECT_EQ(m_client.VolumeOf(33).state, kOffline);
    EXPECT_EQ(m_client.VolumeOf(34).state, kOffline);
    EXPECT_EQ(m_client.LabelOf(33), "Sales 2004");
    std::vector<SideKey> locations;
    EXPECT_EQ(m_client.Locations(33, locations).code, 500);
    std::vector<std::string> aspects;
    ASSERT_TRUE(m_client.Aspects(33, aspects).ok);
    EXPECT_EQ(aspects, (std::vector<std::string>{"sales\\2004"}));
}

TEST_F(ImportExportScan, ExportIsRefusedWhereNothingIs) {
    const std::vector<RefusedMove> cases = {
        {"empty", {8, 0, 4}, "501: There is no medium in slot 5 of magazine 1 in jukebox \"MyBox\"."},
        {"not present", {8, 0, 5}, "502: Slot 6 of magazine 1 in jukebox \"MyBox\" is not present."},
        {"missing magazine", {11, 3, 0}, "502: Magazine 4 of jukebox \"Archive Tower\" is not present."},
        {"no such slot", {8, 0, 12}, "1103: Magazine 1 of jukebox \"MyBox\" has no slot 13."},
        {"disabled", {41, 0, 0}, "1200: Jukebox \"Retired\" is disabled, its media cannot be moved."},
    };
    for (const RefusedMove& refused : cases) {
        EXPECT_EQ(Describe(m_client.Export(refused.slot)), refused.expected) << refused.what;
    }
}

TEST_F(ImportExportScan, ExportOfAMediumThatWasNotReadWorks) {
    EXPECT_TRUE(m_client.Export({8, 0, 6}).ok);
    EXPECT_TRUE(m_client.Export({8, 0, 7}).ok);
}

TEST_F(ImportExportScan, ExportOfOnePartTakesAVolumeSetOfflineButNotAMirror) {
    ASSERT_TRUE(m_client.Export({11, 1, 5}).ok);
    EXPECT_EQ(m_client.VolumeOf(300).state, kOffline);
    std::vector<SideKey> locations;
    ASSERT_TRUE(m_client.Locations(300, locations).ok);
    EXPECT_EQ(locations.size(), 3U);
    ASSERT_TRUE(m_client.Export({29, 0, 0}).ok);
    EXPECT_EQ(m_client.VolumeOf(310).state, kActive);
    ASSERT_TRUE(m_client.Export({29, 0, 1}).ok);
    EXPECT_EQ(m_client.VolumeOf(310).state, kOffline);
}

TEST_F(ImportExportScan, ExportWithoutASlotTakesTheFirstMedium) {
    ASSERT_TRUE(m_client.Export({29, 1, -1}).ok);
    EXPECT_EQ(m_client.SlotState({29, 1, 0}), 3U);
    ASSERT_TRUE(m_client.Export({29, -1, -1}).ok);
    EXPECT_EQ(m_client.SlotState({29, 0, 0}), 3U);
}

TEST_F(ImportExportScan, ExportFromAnEmptyMagazineIsCode4) {
    EXPECT_EQ(Describe(m_client.Export({29, 2, -1})),
              "4: Magazine 3 of jukebox \"Sales Tower\" is already empty.");
    for (int32_t magazine = 0; magazine < 2; ++magazine)
        ExportAll(29, magazine, 6);
    EXPECT_EQ(Describe(m_client.Export({29, -1, -1})), "4: Jukebox \"Sales Tower\" is already empty.");
}

// ---- Scan

TEST_F(ImportExportScan, ScanReadsAMediumThatWasNotRead) {
    EXPECT_EQ(m_client.SlotState({8, 0, 6}), 0U);
    EXPECT_TRUE(m_client.Scan({8, 0, 6}).ok);
    EXPECT_EQ(m_client.SlotState({8, 0, 6}), 4U);
    const SideRecord side = m_client.SideOf({8, 0, 6}, 0);
    EXPECT_EQ(side.state, 6U);
    EXPECT_EQ(side.volumeId, 6);
}

TEST_F(ImportExportScan, ScanOfAReadMediumChangesNothing) {
    EXPECT_TRUE(m_client.Scan({8, 0, 2}).ok);
    EXPECT_EQ(m_client.SlotState({8, 0, 2}), 4U);
}

TEST_F(ImportExportScan, ScanOfAnUnreadableMediumFails) {
    EXPECT_EQ(Describe(m_client.Scan({8, 0, 7})),
              "3: The medium in slot 8 of magazine 1 in jukebox \"MyBox\" cannot be read.");
    EXPECT_EQ(m_client.SlotState({8, 0, 7}), 2U);
}

TEST_F(ImportExportScan, ScanOfAMediumWithOneBadSideSucceeds) {
    EXPECT_TRUE(m_client.Scan({8, 0, 3}).ok);
}

TEST_F(ImportExportScan, ScanIsRefusedWhereNothingIs) {
    const std::vector<RefusedMove> cases = {
        {"empty", {8, 0, 4}, "501: There is no medium in slot 5 of magazine 1 in jukebox \"MyBox\"."},
        {"not present", {8, 0, 5}, "502: Slot 6 of magazine 1 in jukebox \"MyBox\" is not present."},
        {"missing magazine", {11, 3, 0}, "502: Magazine 4 of jukebox \"Archive Tower\" is not present."},
        {"no slot number", {8, 0, -1}, "1005: The slot number is missing in the call of KrvMediaScan."},
        {"disabled", {41, 0, 0}, "1200: Jukebox \"Retired\" is disabled, its media cannot be moved."},
    };
    for (const RefusedMove& refused : cases) {
        EXPECT_EQ(Describe(m_client.Scan(refused.slot)), refused.expected) << refused.what;
    }
}

}  // namespace
}  // namespace embedded_test
