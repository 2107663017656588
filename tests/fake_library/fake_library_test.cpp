#include "tests/fake_library/fake_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

namespace krvfake {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A context as a caller has to build it.
struct Context : KrvCallContext {
    explicit Context(KrvSession handle = 0) {
        std::memset(static_cast<KrvCallContext*>(this), 0, sizeof(KrvCallContext));
        headSize = 24;
        session = handle;
        errorInfo = &error;
        error.size = 1032;
    }
};

MagazineRecord PresetMagazine() {
    return {12, -1, 0};
}

SideRecord PresetSide() {
    return {20, 0, 254, 0, -1};
}

class FakeLibraryTest : public testing::Test {
  protected:
    FakeLibraryTest() { m_fake.Reset(); }

    FakeLibrary& m_fake = FakeLibrary::Instance();
};

TEST_F(FakeLibraryTest, RecordsEveryCallWithItsArguments) {
    KrvSession session = 0;
    Context create;
    EXPECT_NE(KrvSessionCreate(&create, ".", &session), 0);
    Context rename(session);
    const JukeboxKey key{8, 31};
    EXPECT_NE(KrvJukeboxSetName(&rename, &key, "a \"b\"\n"), 0);
    Context close(session);
    EXPECT_NE(KrvSessionClose(&close), 0);
    EXPECT_THAT(m_fake.Calls(),
                ElementsAre("KrvSessionCreate server=\".\"",
                            "KrvJukeboxSetName J=31 name=\"a \\\"b\\\"\\x0A\"", "KrvSessionClose"));
}

TEST_F(FakeLibraryTest, FailsTheCallsThatTheScriptNames) {
    m_fake.FailCall("KrvServiceStop", Occurrence::Nth(2), {501, "No."});
    std::vector<KrvBool> results;
    for (int i = 0; i < 3; ++i) {
        Context context;
        results.push_back(KrvServiceStop(&context));
        EXPECT_EQ(context.error.code, i == 1 ? 501 : 0);
        EXPECT_STREQ(context.error.text, i == 1 ? "No." : "");
    }
    EXPECT_THAT(results, ElementsAre(1, 0, 1));
}

TEST_F(FakeLibraryTest, FailsFromAnOccurrenceOn) {
    m_fake.FailCall("KrvServiceStop", Occurrence::From(2), {7, ""});
    std::vector<KrvBool> results;
    for (int i = 0; i < 4; ++i) {
        Context context;
        results.push_back(KrvServiceStop(&context));
    }
    EXPECT_THAT(results, ElementsAre(1, 0, 0, 0));
}

TEST_F(FakeLibraryTest, CountsTheCallsOfAllFunctionsTogether) {
    m_fake.FailCall("*", Occurrence::Nth(2), {9, ""});
    Context first;
    Context second;
    Context third;
    EXPECT_NE(KrvServiceStop(&first), 0);
    EXPECT_EQ(KrvServiceRestart(&second), 0);
    EXPECT_NE(KrvServiceStop(&third), 0);
}

TEST_F(FakeLibraryTest, FailsAWholeCallLineAndFillsItsOutputsWhenTold) {
    m_fake.GetFarm().AddJukebox(8, "Tower").WithMagazine(2);
    m_fake.GetFarm().AddVolume(33, "Sales").At(8, 0, 1, kSideA);
    m_fake.FailCall("KrvGetSide J=8 M=0 S=1 side=0", Occurrence::Every(), {3, "unreadable"}, Outputs::Filled);
    Context context;
    const SideKey key{20, 8, 0, 1, 0};
    SideRecord record = PresetSide();
    EXPECT_EQ(KrvGetSide(&context, &key, &record), 0);
    EXPECT_EQ(record.volumeId, 33);
    Context other;
    const SideKey otherKey{20, 8, 0, 1, 1};
    record = PresetSide();
    EXPECT_NE(KrvGetSide(&other, &otherKey, &record), 0);
    EXPECT_EQ(record.state, 1U);
}

TEST_F(FakeLibraryTest, FillsAnErrorTextWithoutNulWhenItIsTooLong) {
    m_fake.FailCall("KrvServiceStop", Occurrence::Every(), {1, std::string(2000, 'x')});
    Context context;
    EXPECT_EQ(KrvServiceStop(&context), 0);
    EXPECT_EQ(std::memchr(context.error.text, '\0', sizeof(context.error.text)), nullptr);
}

TEST_F(FakeLibraryTest, ComplainsAboutAContextThatIsNotFresh) {
    Context context(99);
    context.headSize = 1056;
    context.errorInfo = nullptr;
    context.error.size = 24;
    context.error.code = 5;
    context.error.text[1023] = 'x';
    Context fresh;
    context.errorInfo = &fresh.error;
    EXPECT_NE(KrvServiceStop(&context), 0);
    EXPECT_THAT(
        m_fake.Errors(),
        ElementsAre("ERROR KrvServiceStop: context.headSize is 1056, not 24",
                    "ERROR KrvServiceStop: context.errorInfo is not the error part of the same context",
                    "ERROR KrvServiceStop: context.error.size is 24, not 1032",
                    "ERROR KrvServiceStop: context.error.code is 5, not 0",
                    "ERROR KrvServiceStop: context.error.text is not all zero",
                    "ERROR KrvServiceStop: context.session is set, but no session exists"));
}

TEST_F(FakeLibraryTest, ComplainsAboutPresetsThatAreMissing) {
    m_fake.GetFarm().AddJukebox(8, "Tower").WithMagazine(2);
    Context context;
    const MagazineKey key{16, 8, 0};
    MagazineRecord record = PresetMagazine();
    record.slotCount = 0;
    EXPECT_NE(KrvGetMagazine(&context, &key, &record), 0);
    EXPECT_THAT(m_fake.Errors(), ElementsAre("ERROR KrvGetMagazine: key.size is 16, not 12",
                                             "ERROR KrvGetMagazine: record.slotCount is 0, not -1"));
}

TEST_F(FakeLibraryTest, ComplainsAboutEveryConstantArgumentThatIsNotTheConstant) {
    m_fake.GetFarm().AddVolume(33, "Sales").SaysItIsAt(8, 0, 0, 0);
    std::array<Context, 3> contexts;
    SideKey location{20, -1, -1, -1, -1};
    uint32_t count = 0;
    EXPECT_NE(KrvVolumeLocations(&contexts[0], 33, &location, 2, &count), 0);
    EXPECT_NE(KrvVolumeSetAspects(&contexts[1], 33, "a", 0), 0);
    EXPECT_NE(KrvVolumeActivate(&contexts[2], 33, &count), 0);
    EXPECT_THAT(m_fake.Errors(), ElementsAre("ERROR KrvVolumeLocations: the third argument is 2, not 1",
                                             "ERROR KrvVolumeSetAspects: the third argument is 0, not 1",
                                             "ERROR KrvVolumeActivate: the second argument is not null"));
}

TEST_F(FakeLibraryTest, NegotiatesTheSizeOfAspects) {
    m_fake.GetFarm().AddVolume(33, "Sales").WithDirectory("a\\b").WithDirectory("c");
    Context first;
    char byte = 'x';
    uint32_t required = 0;
    EXPECT_NE(KrvVolumeAspects(&first, 33, &byte, 1, &required), 0);
    EXPECT_EQ(required, 7U);  // "a\b" and "c" with their NULs are 4 + 2 bytes, the empty string is 1
    EXPECT_EQ(byte, 'x');
    Context second;
    std::vector<char> buffer(required, 'x');
    EXPECT_NE(KrvVolumeAspects(&second, 33, buffer.data(), required, &required), 0);
    EXPECT_EQ(std::string(buffer.begin(), buffer.end()), std::string("a\\b\0c\0\0", 7));
    EXPECT_THAT(m_fake.Calls(),
                ElementsAre("KrvVolumeAspects V=33 bufferSize=1", "KrvVolumeAspects V=33 bufferSize=7"));
}

TEST_F(FakeLibraryTest, NeverWritesMoreLocationsThanThereIsRoom) {
    Volume& volume = m_fake.GetFarm().AddVolume(33, "Set");
    volume.SaysItIsAt(8, 0, 0, 0).SaysItIsAt(8, 0, 1, 0);
    std::array<SideKey, 2> locations{};
    locations.fill({20, -1, -1, -1, -1});
    uint32_t count = 0;
    Context first;
    EXPECT_NE(KrvVolumeLocations(&first, 33, locations.data(), 1, &count), 0);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(locations[0].slot, 0);
    EXPECT_EQ(locations[1].slot, -1);
    locations.fill({20, -1, -1, -1, -1});
    Context second;
    EXPECT_NE(KrvVolumeLocations(&second, 33, locations.data(), 1, &count), 0);
    EXPECT_EQ(locations[1].slot, 1);
    EXPECT_THAT(m_fake.Calls(),
                ElementsAre("KrvVolumeLocations V=33 room=1", "KrvVolumeLocations V=33 room=2"));
}

TEST_F(FakeLibraryTest, CountsASlotThroughTheJukeboxWhenTheMagazineIsMissing) {
    m_fake.GetFarm().AddJukebox(8, "Tower").WithMagazine(2).WithMagazine(3).WithSlot(1, 2, 2);
    Context context;
    const SlotKey key{16, 8, -1, 4};
    SlotRecord record{12, 0, 254};
    EXPECT_NE(KrvGetSlot(&context, &key, &record), 0);
    EXPECT_EQ(record.state, 2U);
}

TEST_F(FakeLibraryTest, EnumeratesForEverWhenTold) {
    m_fake.GetFarm().EnumerateVolumes({4, 4}, true);
    uint32_t id = 0;
    for (int i = 0; i < 100; ++i) {
        Context context;
        const uint32_t previous = id;
        ASSERT_NE(KrvGetNextVolume(&context, previous, &id), 0);
        ASSERT_EQ(id, 4U);
    }
}

TEST_F(FakeLibraryTest, MakesUpAFarmThatAgreesWithItself) {
    m_fake.Generate({.jukeboxes = 2, .magazinesPerJukebox = 3, .slotsPerMagazine = 4, .volumes = 25});
    uint32_t id = 0;
    int volumes = 0;
    int located = 0;
    while (true) {
        Context step;
        const uint32_t previous = id;
        ASSERT_NE(KrvGetNextVolume(&step, previous, &id), 0);
        if (id == 0) break;
        ++volumes;
        Context locate;
        SideKey location{20, -1, -1, -1, -1};
        uint32_t count = 0;
        if (KrvVolumeLocations(&locate, id, &location, 1, &count) == 0) continue;
        ++located;
        Context look;
        SideRecord side = PresetSide();
        ASSERT_NE(KrvGetSide(&look, &location, &side), 0);
        EXPECT_EQ(side.volumeId, static_cast<int32_t>(id));
    }
    EXPECT_EQ(volumes, 25);
    EXPECT_EQ(located, 24);
    EXPECT_THAT(m_fake.Errors(), IsEmpty());
}

}  // namespace
}  // namespace krvfake
