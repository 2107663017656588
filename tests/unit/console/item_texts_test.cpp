#include "krvcmd/console/query/value_texts.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace Ostrel::UI::Console;

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
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 4), key), "Tower\\3\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 2), key), "Tower\\3\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 1), key), "Tower\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 0), key), "Tower\\12.B");
    EXPECT_EQ(FormatLocation(Jukebox("Tower", -1), key), "Tower\\12.B");
}

TEST(FormatLocation, NamesTheSide) {
    EXPECT_EQ(FormatLocation(Jukebox("Tower", 1), {sizeof(SideKey), 11, 0, 11, 0}), "Tower\\12.A");
    EXPECT_EQ(FormatLocation(Jukebox("", 1), {sizeof(SideKey), 11, 0, 0, 1}), "\\1.B");
}

TEST(FormatLocation, ReadsANameWithoutEnd) {
    krvcmd::JukeboxInfo jukebox;
    std::memset(jukebox.record.name, 'n', sizeof jukebox.record.name);
    jukebox.record.magazineCount = 1;
    EXPECT_EQ(FormatLocation(jukebox, {sizeof(SideKey), 1, 0, 0, 0}), std::string(52, 'n') + "\\1.A");
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

TEST(FormatProduct, TakesTheBlanksBehindTheVendorAway) {
    EXPECT_EQ(FormatProduct(Device("VEN    ", "Changer")), "VEN Changer");
    EXPECT_EQ(FormatProduct(Device(" V N ", " Changer ")), " V N  Changer ");
}

TEST(FormatProduct, IsTheProductAloneWithoutAVendor) {
    EXPECT_EQ(FormatProduct(Device("", "Changer")), "Changer");
    EXPECT_EQ(FormatProduct(Device("        ", "Changer")), "Changer");
    EXPECT_EQ(FormatProduct(Device("VENDOR", "")), "VENDOR ");
}

}  // namespace
