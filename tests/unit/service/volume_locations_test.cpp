#include "krvcmd/service/access/item_lookup.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;

class VolumeLocationsTest : public test::ServiceTest {
  protected:
    VolumeLocationsTest() : m_volume(Farm().AddVolume(33, "Sales 2005")) {}

    // All locations of volume 33 as J/M/S/side, or the error.
    static std::string Read() {
        std::vector<SideKey> locations;
        const Status status = GetVolumeLocations(33, locations);
        std::string text;
        for (const SideKey& key : locations)
            text += Show(key) + " ";
        return status.IsOk() ? text : text + Text(status);
    }

    static std::string ReadFirst() {
        std::optional<SideKey> location;
        const Status status = GetFirstVolumeLocation(33, location);
        if (!status.IsOk()) return Text(status);
        return location.has_value() ? Show(*location) : "none";
    }

    static std::string Show(const SideKey& key) {
        return std::to_string(key.jukeboxId) + "/" + std::to_string(key.magazine) + "/" +
               std::to_string(key.slot) + "/" + std::to_string(key.side);
    }

    krvfake::Volume& m_volume;
};

TEST_F(VolumeLocationsTest, TakesASingleLocationFromTheFirstCall) {
    m_volume.SaysItIsAt(8, 0, 1, 1);
    EXPECT_EQ(Read(), "8/0/1/1 ");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeLocations V=33 room=1"}));
}

TEST_F(VolumeLocationsTest, AsksAgainWhenThereAreSeveral) {
    m_volume.SaysItIsAt(8, 0, 1, 0).SaysItIsAt(11, 2, 3, 1).SaysItIsAt(8, 0, 2, 0);
    EXPECT_EQ(Read(), "8/0/1/0 11/2/3/1 8/0/2/0 ");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeLocations V=33 room=1", "KrvVolumeLocations V=33 room=3"}));
}

TEST_F(VolumeLocationsTest, TakesCode500AsNoLocation) {
    EXPECT_EQ(Read(), "");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeLocations V=33 room=1"}));
}

TEST_F(VolumeLocationsTest, TakesCode500AsNoLocationWhateverWasFilledIn) {
    m_volume.SaysItIsAt(8, 0, 1, 0).SaysItIsAt(8, 0, 2, 0);
    Fake().FailCall("KrvVolumeLocations", Occurrence::Every(), {500, ""}, krvfake::Outputs::Filled);
    EXPECT_EQ(Read(), "");
    EXPECT_EQ(ReadFirst(), "none");
    EXPECT_EQ(TakeCalls().size(), 2U);
}

TEST_F(VolumeLocationsTest, TakesCode500OfTheSecondCallAsNoLocation) {
    m_volume.SaysItIsAt(8, 0, 1, 0).SaysItIsAt(8, 0, 2, 0);
    Fake().FailCall("KrvVolumeLocations", Occurrence::Nth(2), {500, ""});
    EXPECT_EQ(Read(), "");
}

TEST_F(VolumeLocationsTest, HandsOnEveryOtherErrorOfEitherCall) {
    m_volume.SaysItIsAt(8, 0, 1, 0).SaysItIsAt(8, 0, 2, 0);
    Fake().FailCall("KrvVolumeLocations", Occurrence::Nth(1), {499, "first"});
    Fake().FailCall("KrvVolumeLocations", Occurrence::Nth(3), {501, "second"});
    EXPECT_EQ(Read(), "service error 499: first");
    EXPECT_EQ(Read(), "service error 501: second");
}

TEST_F(VolumeLocationsTest, TakesACountOfZeroAsNoLocation) {
    m_volume.locationCounts = {0};
    EXPECT_EQ(Read(), "");
    EXPECT_EQ(ReadFirst(), "none");
}

TEST_F(VolumeLocationsTest, TakesWhatThereWasRoomForWhenTheCountGrowsBetweenTheCalls) {
    m_volume.SaysItIsAt(8, 0, 1, 0).SaysItIsAt(8, 0, 2, 0).SaysItIsAt(8, 0, 3, 0);
    m_volume.locationCounts = {2, 3};
    EXPECT_EQ(Read(), "8/0/1/0 8/0/2/0 ");
}

TEST_F(VolumeLocationsTest, TakesTheSmallerCountWhenItShrinksBetweenTheCalls) {
    m_volume.SaysItIsAt(8, 0, 1, 0).SaysItIsAt(8, 0, 2, 0).SaysItIsAt(8, 0, 3, 0);
    m_volume.locationCounts = {3, 1};
    EXPECT_EQ(Read(), "8/0/1/0 ");
}

TEST_F(VolumeLocationsTest, AsksForTheFirstLocationOnlyHoweverManyThereAre) {
    m_volume.SaysItIsAt(11, 2, 3, 1).SaysItIsAt(8, 0, 2, 0);
    EXPECT_EQ(ReadFirst(), "11/2/3/1");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeLocations V=33 room=1"}));
}

TEST_F(VolumeLocationsTest, FindsNoFirstLocationForAVolumeThatLiesNowhere) {
    EXPECT_EQ(ReadFirst(), "none");
    Fake().FailCall("KrvVolumeLocations", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(ReadFirst(), "service error 9: no");
}

}  // namespace
}  // namespace krvcmd
