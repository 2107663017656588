// Switching items on and off, and their names.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

class EnableDisableRename : public FarmFixture {
  protected:
    JukeboxRecord JukeboxOf(int32_t jukebox) {
        JukeboxRecord record{};
        EXPECT_TRUE(m_client.Jukebox(jukebox, record).ok);
        return record;
    }

    Client m_client;
};

TEST_F(EnableDisableRename, DisabledJukeboxShowsItAndMovesNothing) {
    ASSERT_TRUE(m_client.DisableJukebox(29).ok);
    EXPECT_EQ(JukeboxOf(29).enabled, 0U);
    EXPECT_EQ(m_client.Import({29, 1, 2}).code, 1200);
    EXPECT_EQ(m_client.VolumeOf(201).state, 0U) << "its volumes stay what they are";
    ASSERT_TRUE(m_client.EnableJukebox(29).ok);
    EXPECT_EQ(JukeboxOf(29).enabled, 1U);
    EXPECT_TRUE(m_client.Import({29, 1, 2}).ok);
}

TEST_F(EnableDisableRename, StateThatAnItemHasAlreadyIsSuccess) {
    EXPECT_TRUE(m_client.EnableJukebox(31).ok);
    EXPECT_TRUE(m_client.DisableJukebox(41).ok);
    EXPECT_TRUE(m_client.EnableMagazine(11, 0).ok);
    EXPECT_TRUE(m_client.DisableMagazine(11, 3).ok);
    EXPECT_TRUE(m_client.EnableDrive(8, 0).ok);
    EXPECT_TRUE(m_client.DisableDrive(11, 2).ok);
    EXPECT_TRUE(m_client.EnableVolume(33).ok);
    EXPECT_TRUE(m_client.DisableVolume(108).ok);
}

TEST_F(EnableDisableRename, DisabledMagazineIsNotPresentAndItsVolumesAreOffline) {
    ASSERT_TRUE(m_client.DisableMagazine(11, 1).ok);
    MagazineRecord magazine{};
    ASSERT_TRUE(m_client.Magazine(11, 1, magazine).ok);
    EXPECT_EQ(magazine.present, 0U);
    EXPECT_EQ(magazine.slotCount, 0);
    EXPECT_EQ(JukeboxOf(11).slotCount, 24);
    EXPECT_EQ(m_client.VolumeOf(111).state, 2U);
    EXPECT_EQ(m_client.VolumeOf(300).state, 2U);
    std::vector<SideKey> locations;
    EXPECT_EQ(m_client.Locations(111, locations).code, 500);
    EXPECT_EQ(m_client.Export({11, 1, 0}).code, 502);
}

TEST_F(EnableDisableRename, EnabledMagazineComesBackWithAllThatIsInIt) {
    ASSERT_TRUE(m_client.EnableMagazine(11, 3).ok);
    MagazineRecord magazine{};
    ASSERT_TRUE(m_client.Magazine(11, 3, magazine).ok);
    EXPECT_EQ(magazine.present, 1U);
    EXPECT_EQ(magazine.slotCount, 12);
    EXPECT_EQ(JukeboxOf(11).slotCount, 48);
    EXPECT_EQ(m_client.VolumeOf(117).state, 0U);
    SlotRecord slot{};
    EXPECT_TRUE(m_client.GetSlot({11, -1, 36}, slot).ok) << "absolute numbers reach into it";
}

TEST_F(EnableDisableRename, DisabledDriveShowsIt) {
    DriveRecord drive{};
    ASSERT_TRUE(m_client.DisableDrive(8, 1).ok);
    ASSERT_TRUE(m_client.Drive(8, 1, drive).ok);
    EXPECT_EQ(drive.enabled, 0U);
    ASSERT_TRUE(m_client.EnableDrive(8, 1).ok);
    ASSERT_TRUE(m_client.Drive(8, 1, drive).ok);
    EXPECT_EQ(drive.enabled, 1U);
}

TEST_F(EnableDisableRename, DisabledVolumeShowsItUntilItIsEnabled) {
    ASSERT_TRUE(m_client.DisableVolume(33).ok);
    EXPECT_EQ(m_client.VolumeOf(33).state, 1U);
    ASSERT_TRUE(m_client.EnableVolume(33).ok);
    EXPECT_EQ(m_client.VolumeOf(33).state, 0U);
}

TEST_F(EnableDisableRename, DisabledVolumeComesBackDisabledFromAnExport) {
    ASSERT_TRUE(m_client.DisableVolume(402).ok);
    EXPECT_EQ(m_client.VolumeOf(402).state, 2U) << "it is offline, which counts more";
    for (int32_t slot = 0; slot < 3; ++slot)
        ASSERT_TRUE(m_client.Import({29, 2, slot}).ok);
    EXPECT_EQ(m_client.VolumeOf(402).state, 1U);
    EXPECT_EQ(m_client.VolumeOf(403).state, 0U);
}

TEST_F(EnableDisableRename, VolumeOfUnknownStateIsKnownAfterSwitching) {
    EXPECT_EQ(m_client.VolumeOf(116).state, 3U);
    ASSERT_TRUE(m_client.EnableVolume(116).ok);
    EXPECT_EQ(m_client.VolumeOf(116).state, 0U);
}

TEST_F(EnableDisableRename, ItemsThatAreNotThereAreNamed) {
    EXPECT_EQ(Describe(m_client.EnableJukebox(9)), "1100: There is no jukebox with ID 9.");
    EXPECT_EQ(Describe(m_client.DisableJukebox(-1)), "1100: There is no jukebox with ID -1.");
    EXPECT_EQ(Describe(m_client.EnableMagazine(8, 1)), "1101: Jukebox \"MyBox\" has no magazine 2.");
    EXPECT_EQ(Describe(m_client.DisableMagazine(9, 0)), "1100: There is no jukebox with ID 9.");
    EXPECT_EQ(Describe(m_client.EnableDrive(52, 0)), "1102: Jukebox \"Shelf 7\" has no drive 1.");
    EXPECT_EQ(Describe(m_client.DisableDrive(9, 0)), "1100: There is no jukebox with ID 9.");
    EXPECT_EQ(Describe(m_client.EnableVolume(4)), "1105: There is no volume with ID 4.");
    EXPECT_EQ(Describe(m_client.DisableVolume(0)), "1105: There is no volume with ID 0.");
    EXPECT_EQ(Describe(m_client.DisableVolume(UINT32_MAX)), "1105: There is no volume with ID 4294967295.");
}

// ---- Names

TEST_F(EnableDisableRename, RenamedJukeboxKeepsItsIdAndShowsTheNewName) {
    ASSERT_TRUE(m_client.RenameJukebox(31, "My New Jukebox Name").ok);
    EXPECT_STREQ(JukeboxOf(31).name, "My New Jukebox Name");
    EXPECT_TRUE(m_client.RenameJukebox(31, "My New Jukebox Name").ok) << "it has this name already";
}

TEST_F(EnableDisableRename, JukeboxNameHasOneTo51Bytes) {
    const std::string longest(51, 'n');
    ASSERT_TRUE(m_client.RenameJukebox(31, longest).ok);
    EXPECT_STREQ(JukeboxOf(31).name, longest.c_str());
    EXPECT_EQ(Describe(m_client.RenameJukebox(8, std::string(52, 'n'))),
              "1221: The new name of jukebox \"MyBox\" has 52 bytes, at most 51 are allowed.");
    EXPECT_EQ(Describe(m_client.RenameJukebox(8, "")), "1220: The new name of jukebox \"MyBox\" is empty.");
    EXPECT_STREQ(JukeboxOf(8).name, "MyBox");
}

TEST_F(EnableDisableRename, TwoJukeboxesMayHaveOneName) {
    EXPECT_TRUE(m_client.RenameJukebox(31, "MyBox").ok);
}

TEST_F(EnableDisableRename, NameThatIsNotUtf8ComesBackByteForByte) {
    const std::string name = "K\xF6ln \xFF";
    ASSERT_TRUE(m_client.RenameJukebox(31, name).ok);
    EXPECT_EQ(std::string(JukeboxOf(31).name), name);
}

TEST_F(EnableDisableRename, DirectoryNameReplacesTheFirstOneAndLeavesTheOthers) {
    ASSERT_TRUE(m_client.SetDirectory(300, "dir1/volume300").ok);
    std::vector<std::string> aspects;
    ASSERT_TRUE(m_client.Aspects(300, aspects).ok);
    EXPECT_EQ(aspects, (std::vector<std::string>{"dir1/volume300", "film\\all"}));
}

TEST_F(EnableDisableRename, DirectoryNameCanBeGivenToAVolumeWithoutOne) {
    ASSERT_TRUE(m_client.SetDirectory(107, "first\\name").ok);
    std::vector<std::string> aspects;
    ASSERT_TRUE(m_client.Aspects(107, aspects).ok);
    EXPECT_EQ(aspects, (std::vector<std::string>{"first\\name"}));
    EXPECT_TRUE(m_client.SetDirectory(107, "first\\name").ok) << "it has this name already";
}

TEST_F(EnableDisableRename, DirectoryNameIsGivenOnceInAService) {
    EXPECT_EQ(Describe(m_client.SetDirectory(273, "sales\\2004")),
              "1224: Directory name \"sales\\2004\" belongs to volume 33 already.");
    EXPECT_EQ(Describe(m_client.SetDirectory(273, "film\\all")),
              "1224: Directory name \"film\\all\" belongs to volume 300 already.");
    EXPECT_TRUE(m_client.SetDirectory(273, "sales\\2004 ").ok);
}

TEST_F(EnableDisableRename, DirectoryNameHasOneTo1023Bytes) {
    EXPECT_EQ(Describe(m_client.SetDirectory(273, "")),
              "1222: The new directory name of volume 273 is empty.");
    EXPECT_EQ(Describe(m_client.SetDirectory(273, std::string(1024, 'd'))),
              "1223: The new directory name of volume 273 has 1024 bytes, at most 1023 are allowed.");
    EXPECT_EQ(Describe(m_client.SetDirectory(4, "x")), "1105: There is no volume with ID 4.");
    std::vector<std::string> aspects;
    ASSERT_TRUE(m_client.Aspects(273, aspects).ok);
    EXPECT_EQ(aspects, (std::vector<std::string>{"lab\\measurements\\7"}));
}

TEST_F(EnableDisableRename, OfflineVolumeCanBeRenamed) {
    ASSERT_TRUE(m_client.SetDirectory(401, "backup\\other").ok);
    std::vector<std::string> aspects;
    ASSERT_TRUE(m_client.Aspects(401, aspects).ok);
    EXPECT_EQ(aspects, (std::vector<std::string>{"backup\\other"}));
}

}  // namespace
}  // namespace embedded_test
