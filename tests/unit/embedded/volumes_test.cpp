#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {
namespace {

// By jukebox: MyBox 9, Archive Tower 17, Sales Tower 9, my_box and My Box 7, Research, Retired and
// Shelf 7 together 7, on the shelf 1.
constexpr size_t kSeenVolumes = 9 + 17 + 9 + 7 + 7 + 1;

class Volumes : public FarmFixture {
  protected:
    std::vector<std::string> AspectsOf(uint32_t volume) {
        std::vector<std::string> aspects;
        const Outcome outcome = m_client.Aspects(volume, aspects);
        EXPECT_TRUE(outcome.ok) << Describe(outcome);
        return aspects;
    }

    Client m_client;
};

TEST_F(Volumes, ComeInTheOrderOfTheirIdsAndUnseenOnesNotAtAll) {
    const std::vector<uint32_t> volumes = m_client.Volumes();
    EXPECT_EQ(volumes.size(), kSeenVolumes);
    EXPECT_TRUE(std::ranges::is_sorted(volumes));
    EXPECT_EQ(volumes.front(), 1U);
    EXPECT_EQ(volumes.back(), 517U);
}

TEST_F(Volumes, EnumerationGoesOnAfterAnIdThatIsGone) {
    Context context(m_client.GetSession());
    uint32_t next = 0;
    ASSERT_NE(KrvGetNextVolume(context.Get(), 35, &next), 0);
    EXPECT_EQ(next, 101U);
    Context last(m_client.GetSession());
    ASSERT_NE(KrvGetNextVolume(last.Get(), UINT32_MAX, &next), 0);
    EXPECT_EQ(next, 0U);
}

TEST_F(Volumes, RecordTellsEverything) {
    const VolumeRecord record = m_client.VolumeOf(300);
    EXPECT_EQ(record.size, 336U);
    EXPECT_EQ(record.type, 2U);
    EXPECT_EQ(record.state, 0U);
    EXPECT_STREQ(record.fileSystem, "UDF 2.60");
    EXPECT_STREQ(record.label, "Film archive");
    EXPECT_EQ(record.totalCapacity, 4'200'000'000'000U);
    EXPECT_EQ(record.freeCapacity, 1'470'000'000'000U);
    EXPECT_EQ(record.libraryValue1, -1);
    EXPECT_EQ(record.libraryValue2, 0U);
}

struct StateCase {
    uint32_t volume;
    uint32_t type;
    uint32_t state;
    const char* why;
};

TEST_F(Volumes, ShowEveryTypeAndState) {
    const std::vector<StateCase> cases = {
        {33, 0, 0, "an active disc"},         {310, 1, 0, "a mirror"},
        {300, 2, 0, "a volume set"},          {108, 0, 1, "disabled"},
        {401, 0, 2, "on the shelf"},          {402, 0, 2, "in an import station"},
        {117, 0, 2, "in a missing magazine"}, {116, 0, 3, "shown as unknown"},
        {281, 0, 0, "in a disabled jukebox"}, {6, 0, 0, "in a slot that was not read"},
    };
    for (const StateCase& expected : cases) {
        const VolumeRecord record = m_client.VolumeOf(expected.volume);
        EXPECT_EQ(record.type, expected.type) << expected.why;
        EXPECT_EQ(record.state, expected.state) << expected.why;
    }
}

TEST_F(Volumes, LabelWithPerCentSignsComesAsItIs) {
    EXPECT_EQ(m_client.LabelOf(5), "100%s %n");
}

TEST_F(Volumes, AspectsAreTheDirectoryNames) {
    EXPECT_EQ(AspectsOf(33), (std::vector<std::string>{"sales\\2004"}));
    EXPECT_EQ(AspectsOf(300), (std::vector<std::string>{"film\\archive", "film\\all"}));
    EXPECT_EQ(AspectsOf(107), std::vector<std::string>());
}

TEST_F(Volumes, AspectsSizeIsToldWhateverTheBuffer) {
    // "film\archive" and its NUL, "film\all" and its NUL, the NUL at the end: 13 + 9 + 1
    constexpr uint32_t kNeeded = 23;
    for (const uint32_t size : {0U, 1U, 22U, 23U, 40U}) {
        std::string buffer(size, '*');
        uint32_t required = 0;
        Context context(m_client.GetSession());
        ASSERT_NE(KrvVolumeAspects(context.Get(), 300, buffer.data(), size, &required), 0);
        EXPECT_EQ(required, kNeeded) << size;
        if (size < kNeeded) {
            EXPECT_EQ(buffer, std::string(size, '*')) << size;
        } else {
            EXPECT_EQ(buffer.substr(0, kNeeded), std::string("film\\archive\0film\\all\0\0", kNeeded))
                << size;
            EXPECT_EQ(buffer.substr(kNeeded), std::string(size - kNeeded, '*')) << size;
        }
    }
}

TEST_F(Volumes, WithoutAspectsNothingIsNeeded) {
    char byte = '*';
    uint32_t required = 7;
    Context context(m_client.GetSession());
    ASSERT_NE(KrvVolumeAspects(context.Get(), 107, &byte, 1, &required), 0);
    EXPECT_EQ(required, 0U);
    EXPECT_EQ(byte, '*');
}

TEST_F(Volumes, AspectsOfAnUnknownVolumeFail) {
    std::vector<std::string> aspects;
    EXPECT_EQ(Describe(m_client.Aspects(4, aspects)), "1105: There is no volume with ID 4.");
    EXPECT_EQ(m_client.Aspects(0, aspects).code, 1105);
}

TEST_F(Volumes, LocationIsTheSideThatHoldsTheVolume) {
    std::vector<SideKey> locations;
    ASSERT_TRUE(m_client.Locations(34, locations).ok);
    ASSERT_EQ(locations.size(), 1U);
    EXPECT_EQ(locations[0].size, 20U);
    EXPECT_EQ(locations[0].jukeboxId, 8);
    EXPECT_EQ(locations[0].magazine, 0);
    EXPECT_EQ(locations[0].slot, 2);
    EXPECT_EQ(locations[0].side, 1);
}

TEST_F(Volumes, VolumeSetHasItsLocationsInOrder) {
    std::vector<SideKey> locations;
    ASSERT_TRUE(m_client.Locations(300, locations).ok);
    ASSERT_EQ(locations.size(), 4U);
    for (int32_t part = 0; part < 4; ++part) {
        const SideKey& location = locations[static_cast<size_t>(part)];
        EXPECT_EQ(location.jukeboxId, 11);
        EXPECT_EQ(location.magazine, 1);
        EXPECT_EQ(location.slot, 4 + part);
        EXPECT_EQ(location.side, 0);
    }
}

TEST_F(Volumes, FirstCallForLocationsWritesOneElementOnly) {
    std::vector<SideKey> room(4, SideKey{sizeof(SideKey), -1, -1, -1, -1});
    uint32_t count = 0;
    Context context(m_client.GetSession());
    ASSERT_NE(KrvVolumeLocations(context.Get(), 300, room.data(), 1, &count), 0);
    EXPECT_EQ(count, 4U);
    EXPECT_EQ(room[0].slot, 4);
    EXPECT_EQ(room[1].jukeboxId, -1);
}

TEST_F(Volumes, SecondCallForLocationsWritesNoMoreThanItsCount) {
    std::vector<SideKey> room(4, SideKey{sizeof(SideKey), -1, -1, -1, -1});
    uint32_t count = 3;
    Context context(m_client.GetSession());
    ASSERT_NE(KrvVolumeLocations(context.Get(), 300, room.data(), 1, &count), 0);
    EXPECT_EQ(count, 4U);
    EXPECT_EQ(room[2].slot, 6);
    EXPECT_EQ(room[3].jukeboxId, -1);
}

TEST_F(Volumes, VolumeInNoPlaceIsCode500) {
    std::vector<SideKey> locations;
    for (const uint32_t volume : {401U, 402U, 117U}) {
        EXPECT_EQ(Describe(m_client.Locations(volume, locations)),
                  "500: Volume " + std::to_string(volume) + " is in no jukebox.");
    }
    EXPECT_EQ(Describe(m_client.Locations(4, locations)), "1105: There is no volume with ID 4.");
}

// ---- Listings read ahead; that must not show.

// Everything that a listing of volumes asks for, as text.
std::string FactsOf(Client& client, uint32_t volume) {
    const VolumeRecord record = client.VolumeOf(volume);
    std::string facts = std::string(record.label) + "|" + record.fileSystem + "|" +
                        std::to_string(record.type) + "|" + std::to_string(record.state) + "|" +
                        std::to_string(record.totalCapacity) + "|" + std::to_string(record.freeCapacity);
    std::vector<std::string> aspects;
    EXPECT_TRUE(client.Aspects(volume, aspects).ok);
    for (const std::string& aspect : aspects)
        facts += "|" + aspect;
    std::vector<SideKey> locations;
    const Outcome outcome = client.Locations(volume, locations);
    facts += "|" + Describe(outcome);
    if (!outcome.ok) return facts;
    for (const SideKey& location : locations) {
        const SideRecord side =
            client.SideOf({location.jukeboxId, location.magazine, location.slot}, location.side);
        facts += "|" + std::to_string(location.jukeboxId) + "/" + std::to_string(location.magazine) + "/" +
                 std::to_string(location.slot) + "/" + std::to_string(location.side) + ":" +
                 std::to_string(side.state) + "," + std::to_string(side.mediumCode) + "," +
                 std::to_string(side.finalization) + "," + std::to_string(side.volumeId);
    }
    return facts;
}

TEST_F(Volumes, ListingTellsTheSameAsSingleLooks) {
    uint32_t volume = 0;
    size_t seen = 0;
    while (true) {
        Context context(m_client.GetSession());
        uint32_t next = 0;
        ASSERT_NE(KrvGetNextVolume(context.Get(), volume, &next), 0);
        if (next == 0) break;
        volume = next;
        ++seen;
        const std::string listed = FactsOf(m_client, volume);
        Client single;
        EXPECT_EQ(listed, FactsOf(single, volume)) << volume;
    }
    EXPECT_EQ(seen, kSeenVolumes);
}

TEST_F(Volumes, ListingShowsWhatAnotherSessionChangesOnTheWay) {
    Client other;
    std::vector<uint32_t> seen;
    uint32_t volume = 0;
    while (true) {
        Context context(m_client.GetSession());
        uint32_t next = 0;
        ASSERT_NE(KrvGetNextVolume(context.Get(), volume, &next), 0);
        if (next == 0) break;
        volume = next;
        seen.push_back(volume);
        if (volume == 9) {
            ASSERT_TRUE(other.Erase({8, 0, 2}, 1).ok);              // volume 34 is gone
            ASSERT_TRUE(other.Format({8, 0, 2}, 0, "Changed").ok);  // volume 33 has another label
            ASSERT_TRUE(other.SetDirectory(10, "cd\\renamed").ok);
        }
        if (volume == 33) {
            EXPECT_EQ(m_client.LabelOf(33), "Changed");
        }
        if (volume == 10) {
            EXPECT_EQ(AspectsOf(10), (std::vector<std::string>{"cd\\renamed"}));
        }
    }
    EXPECT_EQ(std::ranges::count(seen, 34U), 0);
    EXPECT_EQ(std::ranges::count(seen, 33U), 1);
}

}  // namespace
}  // namespace embedded_test
