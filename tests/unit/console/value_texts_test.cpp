#include "krvcmd/console/query/value_texts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>

namespace {

using namespace Ostrel::UI::Console;

TEST(ValueTexts, NameFlags) {
    EXPECT_EQ(EnabledText(0), "disabled");
    EXPECT_EQ(EnabledText(1), "active");
    EXPECT_EQ(EnabledText(0x80000000U), "active");
    EXPECT_EQ(PresentText(0), "n/a");
    EXPECT_EQ(PresentText(2), "available");
    EXPECT_EQ(DoubleSidedText(0), "no");
    EXPECT_EQ(DoubleSidedText(7), "yes");
    EXPECT_EQ(SideText(0), "A");
    EXPECT_EQ(SideText(1), "B");
}

TEST(ValueTexts, NameSlotStates) {
    EXPECT_EQ(SlotStatusText(0), "unknown");
    EXPECT_EQ(SlotStatusText(1), "not present");
    EXPECT_EQ(SlotStatusText(2), "scan failed");
    EXPECT_EQ(SlotStatusText(3), "slot empty");
    EXPECT_EQ(SlotStatusText(4), "slot full");
    EXPECT_EQ(SlotStatusText(5), "");
    EXPECT_EQ(SlotStatusText(0xFFFFFFFFU), "");
}

TEST(ValueTexts, NameVolumeStates) {
    EXPECT_EQ(VolumeStatusText(0), "active");
    EXPECT_EQ(VolumeStatusText(1), "disabled");
    EXPECT_EQ(VolumeStatusText(2), "offline");
    EXPECT_EQ(VolumeStatusText(3), "unknown");
    EXPECT_EQ(VolumeStatusText(0xFFFFFFFFU), "unknown");
}

TEST(ValueTexts, NameVolumeTypes) {
    EXPECT_EQ(VolumeTypeText(0), "Disc");
    EXPECT_EQ(VolumeTypeText(1), "Mirror");
    EXPECT_EQ(VolumeTypeText(2), "Volume Set");
    EXPECT_EQ(VolumeTypeText(3), "");
}

TEST(ValueTexts, NameRecordedStatesOfSides) {
    EXPECT_EQ(RecordedStateText(0), "Unknown.");
    EXPECT_EQ(RecordedStateText(1), "Not present.");
    EXPECT_EQ(RecordedStateText(2), "Scan failed.");
    EXPECT_EQ(RecordedStateText(3), "Bad Side.");
    EXPECT_EQ(RecordedStateText(4), "Blank Side,");
    EXPECT_EQ(RecordedStateText(5), "No Filesystem.");
    EXPECT_EQ(RecordedStateText(6), "Contains Filesystem.");
    EXPECT_EQ(RecordedStateText(7), "");
}

TEST(ValueTexts, NameFinalizationStates) {
    EXPECT_EQ(FinalizationText(0), "Unknown.");
    EXPECT_EQ(FinalizationText(1), "Not finalized.");
    EXPECT_EQ(FinalizationText(2), "Finalized.");
    EXPECT_EQ(FinalizationText(3), "Closed.");
    EXPECT_EQ(FinalizationText(4), "");
}

TEST(ValueTexts, NameEveryMediaTypeCode) {
    const std::map<uint32_t, std::string_view> named{{0, "CD-ROM"},          {1, "CD-R"},
                                                     {2, "CD-RW"},           {4, "DVD-ROM"},
                                                     {5, "DVD-R"},           {6, "DVD-RW"},
                                                     {7, "DVD-Row"},         {9, "DVD+R"},
                                                     {10, "DVD+RW"},         {12, "DVD-RAM"},
                                                     {13, "DVD-RAM WO"},     {16, "DVD-R DL"},
                                                     {17, "DVD+R DL"},       {20, "MO Rewritable"},
                                                     {21, "MO Write Once"},  {22, "PDD Rewritable"},
                                                     {23, "PDD Write Once"}, {24, "UDO Rewritable"},
                                                     {25, "UDO Write Once"}, {26, "BD-RE"},
                                                     {27, "BD-R"},           {254, "<unknown>"},
                                                     {255, "<no disc>"}};
    for (uint32_t code = 0; code <= 300; ++code) {
        const auto found = named.find(code);
        EXPECT_EQ(MediaTypeText(code), found == named.end() ? "" : found->second) << code;
    }
}

krvcmd::JukeboxInfo Jukebox(const char* name, int32_t magazineCount) {
    krvcmd::JukeboxInfo jukebox;
    std::strncpy(jukebox.record.name, name, sizeof jukebox.record.name);
    jukebox.record.magazineCount = magazineCount;
    return jukebox;
}

DeviceIdentity Device(const char* vendor, const char* product) {
    DeviceIdentity device{};
    std::strncpy(device.vendor, vendor, sizeof device.vendor);
    std::strncpy(device.product, product, sizeof device.product);
    return device;
}

TEST(FormatLocation, NamesTheMagazineOnlyWhenThereAreSeveral) {
    const SideKey key{sizeof(SideKey), 11, 2, 11, 1};
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 4), key).View(), "Tower\\3\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 2), key).View(), "Tower\\3\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 1), key).View(), "Tower\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 0), key).View(), "Tower\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", -1), key).View(), "Tower\\12.B");
}

TEST(FormatLocation, NamesTheSide) {
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 1), {sizeof(SideKey), 11, 0, 11, 0}).View(), "Tower\\12.A");
    EXPECT_EQ(FormatLocation(Jukebox("", 1), {sizeof(SideKey), 11, 0, 0, 1}).View(), "\\1.B");
}

TEST(FormatLocation, ReadsANameWithoutEnd) {
    krvcmd::JukeboxInfo jukebox;
    std::memset(jukebox.record.name, 'n', sizeof jukebox.record.name);
    jukebox.record.magazineCount = 1;
    EXPECT_EQ(FormatLocation(jukebox, {sizeof(SideKey), 1, 0, 0, 0}).View(), std::string(52, 'n') + "\\1.A");
}

TEST(FormatScsiAddress, JoinsThreeNumbers) {
    DeviceIdentity device{};
    EXPECT_EQ(FormatScsiAddress(device), "0/0/0");
    device.scsiAddress[1] = 4;
    EXPECT_EQ(FormatScsiAddress(device), "0/4/0");
    device.scsiAddress[0] = -1;
    device.scsiAddress[2] = 2147483647;
    EXPECT_EQ(FormatScsiAddress(device), "-1/4/2147483647");
}

TEST(FormatProduct, PutsABlankBetweenVendorAndProduct) {
    EXPECT_EQ(FormatProduct(Device("VENDOR", "Changer 100")), "VENDOR Changer 100");
}

TEST(FormatProduct, RemovesTheTrailingBlanksOfTheVendor) {
    EXPECT_EQ(FormatProduct(Device("VEN    ", "Changer")), "VEN Changer");
    EXPECT_EQ(FormatProduct(Device(" V N ", " Changer ")), " V N  Changer ");
}

TEST(FormatProduct, IsTheProductAloneWithoutAVendor) {
    EXPECT_EQ(FormatProduct(Device("", "Changer")), "Changer");
    EXPECT_EQ(FormatProduct(Device("        ", "Changer")), "Changer");
    EXPECT_EQ(FormatProduct(Device("VENDOR", "")), "VENDOR ");
}

}  // namespace
