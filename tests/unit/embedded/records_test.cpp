// What the looking functions tell of the demonstration farm, compared with its layout file by hand.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

class Records : public FarmFixture {
  protected:
    Client m_client;
};

TEST_F(Records, JukeboxRecordTellsEverything) {
    JukeboxRecord record{};
    std::memset(&record, 0xAA, sizeof(record));
    ASSERT_TRUE(m_client.Jukebox(11, record).ok);
    EXPECT_EQ(record.size, 120U);
    EXPECT_EQ(record.identity.scsiAddress[0], 1);
    EXPECT_EQ(record.identity.scsiAddress[1], 0);
    EXPECT_EQ(record.identity.scsiAddress[2], 0);
    EXPECT_STREQ(record.identity.vendor, "TINDRAK");
    EXPECT_STREQ(record.identity.product, "Tower 480");
    EXPECT_STREQ(record.identity.revision, "3.02");
    EXPECT_EQ(record.enabled, 1U);
    EXPECT_EQ(record.doubleSided, 0U);
    EXPECT_EQ(record.driveCount, 3);
    EXPECT_EQ(record.magazineCount, 4);
    EXPECT_EQ(record.slotCount, 36) << "the slots of the missing magazine do not count";
    EXPECT_STREQ(record.name, "Archive Tower");
}

TEST_F(Records, DisabledJukeboxAndTheOneWithoutDrivesShowIt) {
    JukeboxRecord record{};
    ASSERT_TRUE(m_client.Jukebox(41, record).ok);
    EXPECT_EQ(record.enabled, 0U);
    EXPECT_EQ(record.doubleSided, 1U);
    ASSERT_TRUE(m_client.Jukebox(52, record).ok);
    EXPECT_EQ(record.driveCount, 0);
}

TEST_F(Records, VendorKeepsItsTrailingBlank) {
    JukeboxRecord record{};
    ASSERT_TRUE(m_client.Jukebox(14, record).ok);
    EXPECT_STREQ(record.identity.vendor, "TINDRAK ");
}

TEST_F(Records, MagazinesTellTheirSlots) {
    MagazineRecord record{};
    ASSERT_TRUE(m_client.Magazine(29, 1, record).ok);
    EXPECT_EQ(record.slotCount, 6);
    EXPECT_EQ(record.present, 1U);
}

TEST_F(Records, MissingMagazineShowsNoSlots) {
    MagazineRecord record{};
    ASSERT_TRUE(m_client.Magazine(11, 3, record).ok);
    EXPECT_EQ(record.slotCount, 0);
    EXPECT_EQ(record.present, 0U);
    SlotRecord slot{};
    EXPECT_EQ(Describe(m_client.GetSlot({11, 3, 0}, slot)),
              "502: Magazine 4 of jukebox \"Archive Tower\" is not present.");
}

TEST_F(Records, DriveRecordTellsEverything) {
    DriveRecord record{};
    ASSERT_TRUE(m_client.Drive(11, 2, record).ok);
    EXPECT_STREQ(record.identity.vendor, "MARBEK");
    EXPECT_STREQ(record.identity.product, "UD-30 Writer");
    EXPECT_STREQ(record.identity.revision, "1.7");
    EXPECT_EQ(record.identity.scsiAddress[1], 3);
    EXPECT_EQ(record.enabled, 0U);
}

struct SlotCase {
    int32_t slot;
    uint32_t state;
    uint32_t medium;
};

TEST_F(Records, SlotsOfMyBoxShowEveryState) {
    const std::vector<SlotCase> cases = {
        {0, 4, 20}, {1, 4, 21}, {2, 4, 12}, {3, 4, 24}, {4, 3, 255},  {5, 1, 255},
        {6, 0, 22}, {7, 2, 27}, {8, 4, 0},  {9, 4, 1},  {10, 3, 255}, {11, 4, 17},
    };
    for (const SlotCase& expected : cases) {
        SlotRecord record{};
        ASSERT_TRUE(m_client.GetSlot({8, 0, expected.slot}, record).ok) << expected.slot;
        EXPECT_EQ(record.state, expected.state) << expected.slot;
        EXPECT_EQ(record.mediumCode, expected.medium) << expected.slot;
    }
}

struct SideCase {
    int32_t slot;
    int32_t side;
    uint32_t state;
    uint32_t medium;
    uint32_t finalization;
    int32_t volume;
};

TEST_F(Records, SidesOfMyBoxShowEveryState) {
    const std::vector<SideCase> cases = {
        {0, 0, 6, 20, 1, 1},   // two volumes on one medium
        {0, 1, 6, 20, 1, 2},   //
        {1, 0, 6, 21, 1, 3},   // one volume, the other side blank
        {1, 1, 4, 21, 1, 0},   //
        {6, 0, 0, 22, 0, 6},   // in a slot that was not read, only the volume is known
        {7, 0, 2, 27, 0, 0},   // in a slot whose medium cannot be read
        {8, 0, 6, 0, 3, 9},    // a read-only medium is closed
        {8, 1, 1, 0, 0, 0},    // a single-sided medium has no side B
        {9, 0, 6, 1, 2, 10},   // finalized
        {11, 0, 5, 17, 1, 0},  // no file system
    };
    for (const SideCase& expected : cases) {
        const SideRecord record = m_client.SideOf({8, 0, expected.slot}, expected.side);
        EXPECT_EQ(record.size, 20U);
        EXPECT_EQ(record.state, expected.state) << expected.slot << "/" << expected.side;
        EXPECT_EQ(record.mediumCode, expected.medium) << expected.slot << "/" << expected.side;
        EXPECT_EQ(record.finalization, expected.finalization) << expected.slot << "/" << expected.side;
        EXPECT_EQ(record.volumeId, expected.volume) << expected.slot << "/" << expected.side;
    }
}

TEST_F(Records, BadSideFailsWithItsRecordFilled) {
    SideRecord record{};
    EXPECT_EQ(Describe(m_client.Side({8, 0, 3}, 1, record)),
              "3: Side B of the medium in slot 4 of magazine 1 in jukebox \"MyBox\" cannot be read.");
    EXPECT_EQ(record.state, 3U);
    EXPECT_EQ(record.mediumCode, 24U);
    EXPECT_EQ(record.volumeId, 0);
}

TEST_F(Records, SideOfAnEmptyOrMissingSlotFails) {
    SideRecord record{};
    EXPECT_EQ(Describe(m_client.Side({8, 0, 4}, 0, record)),
              "501: There is no medium in slot 5 of magazine 1 in jukebox \"MyBox\".");
    EXPECT_EQ(Describe(m_client.Side({8, 0, 5}, 0, record)),
              "502: Slot 6 of magazine 1 in jukebox \"MyBox\" is not present.");
}

struct MissingItem {
    const char* description;
    Outcome outcome;
    const char* expected;
};

TEST_F(Records, ItemsThatAreNotThereAreNamed) {
    JukeboxRecord jukebox{};
    MagazineRecord magazine{};
    DriveRecord drive{};
    SlotRecord slot{};
    SideRecord side{};
    VolumeRecord volume{};
    const std::vector<MissingItem> cases = {
        {"jukebox", m_client.Jukebox(9, jukebox), "1100: There is no jukebox with ID 9."},
        {"ID 0", m_client.Jukebox(0, jukebox), "1100: There is no jukebox with ID 0."},
        {"ID -1", m_client.Jukebox(-1, jukebox), "1100: There is no jukebox with ID -1."},
        {"magazine", m_client.Magazine(8, 1, magazine), "1101: Jukebox \"MyBox\" has no magazine 2."},
        {"magazine -1", m_client.Magazine(8, -1, magazine), "1101: Jukebox \"MyBox\" has no magazine 0."},
        {"jukebox of magazine", m_client.Magazine(9, 0, magazine), "1100: There is no jukebox with ID 9."},
        {"drive", m_client.Drive(8, 2, drive), "1102: Jukebox \"MyBox\" has no drive 3."},
        {"jukebox of drive", m_client.Drive(9, 0, drive), "1100: There is no jukebox with ID 9."},
        {"slot", m_client.GetSlot({8, 0, 12}, slot), "1103: Magazine 1 of jukebox \"MyBox\" has no slot 13."},
        {"magazine of slot", m_client.GetSlot({8, 7, 0}, slot), "1101: Jukebox \"MyBox\" has no magazine 8."},
        {"magazine -2", m_client.GetSlot({8, -2, 0}, slot), "1101: Jukebox \"MyBox\" has no magazine -1."},
        {"jukebox of slot", m_client.GetSlot({9, 0, 0}, slot), "1100: There is no jukebox with ID 9."},
        {"no slot number", m_client.GetSlot({8, 0, -1}, slot),
         "1005: The slot number is missing in the call of KrvGetSlot."},
        {"largest numbers", m_client.GetSlot({INT32_MAX, INT32_MAX, INT32_MAX}, slot),
         "1100: There is no jukebox with ID 2147483647."},
        {"largest slot", m_client.GetSlot({8, 0, INT32_MAX}, slot),
         "1103: Magazine 1 of jukebox \"MyBox\" has no slot 2147483648."},
        {"lowest slot", m_client.GetSlot({8, 0, INT32_MIN}, slot),
         "1005: The slot number is missing in the call of KrvGetSlot."},
        {"side", m_client.Side({8, 0, 0}, 2, side),
         "1106: Slot 1 of magazine 1 in jukebox \"MyBox\" has no side 2."},
        {"side -1", m_client.Side({8, 0, 0}, -1, side),
         "1106: Slot 1 of magazine 1 in jukebox \"MyBox\" has no side -1."},
        {"volume", m_client.Volume(4, volume), "1105: There is no volume with ID 4."},
        {"volume 0", m_client.Volume(0, volume), "1105: There is no volume with ID 0."},
        {"volume never seen", m_client.Volume(static_cast<uint32_t>(-1), volume),
         "1105: There is no volume with ID 4294967295."},
    };
    for (const MissingItem& missing : cases)
        EXPECT_EQ(Describe(missing.outcome), missing.expected) << missing.description;
}

struct AbsoluteCase {
    int32_t jukebox;
    int32_t absolute;
    const char* expected;  // empty: found
    Slot place;
};

TEST_F(Records, AbsoluteSlotNumbersCountThroughThePresentMagazines) {
    const std::vector<AbsoluteCase> cases = {
        {11, 0, "", {11, 0, 0}},
        {11, 11, "", {11, 0, 11}},
        {11, 12, "", {11, 1, 0}},
        {11, 32, "", {11, 2, 8}},
        {11, 35, "", {11, 2, 11}},
        {11, 36, "1104: Slot 37 of jukebox \"Archive Tower\" cannot be reached by its absolute number.", {}},
        {8, 11, "", {8, 0, 11}},
        {8, 12, "1104: Slot 13 of jukebox \"MyBox\" cannot be reached by its absolute number.", {}},
        {9, 0, "1100: There is no jukebox with ID 9.", {}},
    };
    for (const AbsoluteCase& expected : cases) {
        SlotRecord byAbsolute{};
        const Outcome outcome = m_client.GetSlot({expected.jukebox, -1, expected.absolute}, byAbsolute);
        if (*expected.expected != '\0') {
            EXPECT_EQ(Describe(outcome), expected.expected);
            continue;
        }
        ASSERT_TRUE(outcome.ok) << Describe(outcome);
        SlotRecord byMagazine{};
        ASSERT_TRUE(m_client.GetSlot(expected.place, byMagazine).ok);
        EXPECT_EQ(byAbsolute.state, byMagazine.state) << expected.absolute;
        EXPECT_EQ(byAbsolute.mediumCode, byMagazine.mediumCode) << expected.absolute;
    }
}

TEST_F(Records, AbsoluteSlotNumbersEndAtAMissingMagazine) {
    ASSERT_TRUE(m_client.DisableMagazine(11, 1).ok);
    SlotRecord record{};
    EXPECT_TRUE(m_client.GetSlot({11, -1, 11}, record).ok);
    EXPECT_EQ(m_client.GetSlot({11, -1, 12}, record).code, 1104);
    EXPECT_EQ(m_client.GetSlot({11, -1, 32}, record).code, 1104);
    EXPECT_TRUE(m_client.GetSlot({11, 2, 8}, record).ok);
}

TEST_F(Records, SidesAreFoundByAbsoluteSlotNumberToo) {
    EXPECT_EQ(m_client.SideOf({11, -1, 32}, 0).volumeId, 517);
}

}  // namespace
}  // namespace embedded_test
