// Not on Windows: real changers and drives are spoken to by the means of Linux.
#include <gtest/gtest.h>

#include "embedded/attached/transport/iscsi_address.h"
#include "embedded/attached/transport/open_transport.h"

namespace embedded::attached {
namespace {

TEST(IscsiPortalTest, HasTheUsualPortUnlessItNamesOne) {
    EXPECT_EQ(*ParseIscsiPortal("tower"), (IscsiPortal{"tower", 3260}));
    EXPECT_EQ(*ParseIscsiPortal("tower.example.org:3261"), (IscsiPortal{"tower.example.org", 3261}));
    EXPECT_EQ(*ParseIscsiPortal("192.0.2.7:1"), (IscsiPortal{"192.0.2.7", 1}));
    EXPECT_EQ(*ParseIscsiPortal("[2001:db8::7]"), (IscsiPortal{"2001:db8::7", 3260}));
    EXPECT_EQ(*ParseIscsiPortal("[fe80::1%eth0]:65535"), (IscsiPortal{"fe80::1%eth0", 65535}));
}

TEST(IscsiPortalTest, IsWrittenAsItIsRead) {
    for (const char* text : {"tower:3260", "192.0.2.7:1", "[2001:db8::7]:3260"}) {
        EXPECT_EQ(ParseIscsiPortal(text)->GetText(), text);
    }
}

TEST(IscsiPortalTest, IsRefusedInAnyOtherForm) {
    for (const char* text :
         {"", ":3260", "tower:", "tower:0", "tower:65536", "tower:32x", "tower:1:2", "2001:db8::7", "[]",
          "[::1", "[::1]x", "[::1]:", "tow er", "tower/x", "tower\033[m:1", "[::1]:-1"}) {
        const auto portal = ParseIscsiPortal(text);
        ASSERT_FALSE(portal) << text;
        EXPECT_EQ(portal.GetError().kind, ErrorKind::NotFound);
    }
    EXPECT_EQ(ParseIscsiPortal("tower\033:1").GetError().text,
              "\"tower?:1\" is not of the form HOST, HOST:PORT or [IPV6]:PORT");
}

TEST(IscsiAddressTest, NamesPortalTargetAndUnit) {
    const IscsiAddress address{{"tower", 3261}, "iqn.2001-04.com.example:jukebox", 3};
    EXPECT_EQ(*ParseIscsiAddress("iscsi://tower:3261/iqn.2001-04.com.example:jukebox/3"), address);
    EXPECT_EQ(address.GetText(), "iscsi://tower:3261/iqn.2001-04.com.example:jukebox/3");
    EXPECT_EQ(ParseIscsiAddress("iscsi://[::1]/t/0")->GetText(), "iscsi://[::1]:3260/t/0");
    EXPECT_EQ(ParseIscsiAddress("iscsi://tower/t/16383")->lun, 16383);
}

TEST(IscsiAddressTest, IsRefusedInAnyOtherForm) {
    for (const char* text :
         {"iscsi://", "iscsi://tower", "iscsi://tower/t", "iscsi://tower/t/", "iscsi://tower//3",
          "iscsi://tower/t/x", "iscsi://tower/t/16384", "iscsi://tower/t/-1", "iscsi://tower/a b/3",
          "iscsi://tower/a/b/3", "http://tower/t/3", "iscsi://:1/t/3", "/dev/sg3"}) {
        EXPECT_FALSE(ParseIscsiAddress(text)) << text;
    }
}

TEST(IscsiAddressTest, MustNotHoldASecretAndDoesNotRepeatIt) {
    const auto address = ParseIscsiAddress("iscsi://operator%sesame@tower/t/3");
    ASSERT_FALSE(address);
    EXPECT_EQ(address.GetError().kind, ErrorKind::NotPermitted);
    EXPECT_EQ(
        address.GetError().text,
        "an iSCSI address must not hold a user or a password: anybody could read it; put them into a file");
}

TEST(OpenTransportTest, SaysWhatAnAddressLooksLike) {
    const auto transport = OpenTransport("sg3", {});
    ASSERT_FALSE(transport);
    EXPECT_EQ(transport.GetError().text,
              "\"sg3\" is no address of a device: neither a device file such as /dev/sg3 nor "
              "iscsi://HOST:PORT/TARGET/LUN");
}

TEST(OpenTransportTest, TellsWhatSpeaksAgainstADeviceFile) {
    EXPECT_EQ(OpenTransport("/dev/no-such-device", {}).GetError().text, "/dev/no-such-device does not exist");
    EXPECT_EQ(OpenTransport("/dev/null", {}).GetError().text, "/dev/null is no SCSI device");
    EXPECT_EQ(OpenTransport("/", {}).GetError().kind, ErrorKind::Refused);
}

}  // namespace
}  // namespace embedded::attached
