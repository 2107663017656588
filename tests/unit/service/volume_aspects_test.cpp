#include <limits>
#include <string_view>

#include "krvcmd/service/access/item_lookup.h"
#include "krvcmd/service/sdk/records.h"
#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;
using Aspects = std::vector<std::string>;

class VolumeAspectsTest : public test::ServiceTest {
  protected:
    VolumeAspectsTest() : m_volume(Farm().AddVolume(33, "Sales 2005")) {}

    // The aspects of volume 33, or the error.
    Aspects Read() {
        Aspects aspects;
        const Status status = ReadAspects(
            [](auto... arguments) { return CallLibrary(KrvVolumeAspects, 33U, arguments...); }, aspects);
        return status.IsOk() ? aspects : Aspects{Text(status)};
    }

    krvfake::Volume& m_volume;
};

TEST_F(VolumeAspectsTest, AsksForTheSizeFirstAndThenForTheList) {
    m_volume.WithDirectory("dir1/volume33").WithDirectory("x");
    EXPECT_EQ(Read(), (Aspects{"dir1/volume33", "x"}));
    // 13 + 1, 1 + 1 and the empty string at the end.
    EXPECT_EQ(TakeCalls(),
              (Calls{"KrvVolumeAspects V=33 bufferSize=1", "KrvVolumeAspects V=33 bufferSize=17"}));
}

TEST_F(VolumeAspectsTest, MakesNoSecondCallForAVolumeWithoutAspects) {
    EXPECT_EQ(Read(), Aspects{});
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeAspects V=33 bufferSize=1"}));
}

TEST_F(VolumeAspectsTest, MakesASecondCallForAListOfOneByte) {
    m_volume.aspectBytes = std::string(1, '\0');
    m_volume.aspectSizes = {1};
    EXPECT_EQ(Read(), Aspects{});
    EXPECT_EQ(TakeCalls(),
              (Calls{"KrvVolumeAspects V=33 bufferSize=1", "KrvVolumeAspects V=33 bufferSize=1"}));
}

TEST_F(VolumeAspectsTest, HandsOnTheErrorOfEitherCall) {
    m_volume.WithDirectory("x");
    Fake().FailCall("KrvVolumeAspects", Occurrence::Nth(1), {9, "first"});
    EXPECT_EQ(Read(), (Aspects{"service error 9: first"}));
    EXPECT_EQ(TakeCalls().size(), 1U);
    Fake().FailCall("KrvVolumeAspects", Occurrence::Nth(2), {9, "second"});
    EXPECT_EQ(Read(), (Aspects{"service error 9: second"}));
    EXPECT_EQ(TakeCalls().size(), 2U);
}

TEST_F(VolumeAspectsTest, EndsAtTheFirstEmptyString) {
    m_volume.aspectBytes = std::string("a\0b\0\0c\0\0", 8);
    EXPECT_EQ(Read(), (Aspects{"a", "b"}));
}

TEST_F(VolumeAspectsTest, StaysInsideTheBufferWhenTheListHasNoEnd) {
    m_volume.aspectBytes = "abc";
    EXPECT_EQ(Read(), (Aspects{"abc"}));
    m_volume.aspectBytes = std::string("abc\0de", 6);
    EXPECT_EQ(Read(), (Aspects{"abc", "de"}));
}

TEST_F(VolumeAspectsTest, TakesWhatFitsWhenTheListGrowsBetweenTheCalls) {
    m_volume.aspectBytes = std::string("abc\0defgh\0\0", 11);
    m_volume.aspectSizes = {6, 11};
    // The second call fills six bytes: "abc", NUL, "de".
    EXPECT_EQ(Read(), (Aspects{"abc", "de"}));
    EXPECT_EQ(TakeCalls().back(), "KrvVolumeAspects V=33 bufferSize=6");
}

TEST_F(VolumeAspectsTest, TakesNoStringBehindTheSizeThatTheSecondCallTells) {
    m_volume.aspectBytes = std::string("abc\0de\0fg\0\0", 11);
    m_volume.aspectSizes = {11, 4};
    // "de" begins at 4, which is not beyond 4; "fg" begins at 7.
    EXPECT_EQ(Read(), (Aspects{"abc", "de"}));
}

TEST_F(VolumeAspectsTest, SurvivesASizeThatNoListHas) {
    m_volume.aspectBytes = std::string("abc\0\0", 5);
    m_volume.aspectSizes = {0x7FFFFFFF};
    EXPECT_EQ(Read(), (Aspects{"abc"}));
}

TEST(SplitAspects, AppendsToTheListGiven) {
    const std::string_view buffer("a\0b\0\0", 5);
    Aspects aspects = {"before"};
    SplitAspects(buffer, buffer.size(), aspects);
    EXPECT_EQ(aspects, (Aspects{"before", "a", "b"}));
}

TEST(SplitAspects, TakesNothingFromAnEmptyBuffer) {
    Aspects aspects;
    SplitAspects({}, 0, aspects);
    SplitAspects({}, std::numeric_limits<size_t>::max(), aspects);
    EXPECT_EQ(aspects, Aspects{});
}

TEST(SplitAspects, LooksAtNothingOutsideTheBufferWhateverSizeIsTold) {
    const std::vector<char> buffer = {'a', '\0', 'b'};  // no NUL behind the "b"
    Aspects aspects;
    SplitAspects(buffer, 1000, aspects);
    EXPECT_EQ(aspects, (Aspects{"a", "b"}));
}

TEST(SplitAspects, TakesAStringThatBeginsAtTheSizeButNoneBeyond) {
    const std::string_view buffer("ab\0cd\0ef\0\0", 10);
    const std::pair<size_t, Aspects> rows[] = {
        {0, {"ab"}}, {2, {"ab"}}, {3, {"ab", "cd"}}, {5, {"ab", "cd"}}, {6, {"ab", "cd", "ef"}}};
    for (const auto& [size, expected] : rows) {
        Aspects aspects;
        SplitAspects(buffer, size, aspects);
        EXPECT_EQ(aspects, expected) << size;
    }
}

class GetVolumeTest : public test::ServiceTest {};

TEST_F(GetVolumeTest, ReadsRecordAndAspects) {
    Farm().AddVolume(33, "Sales 2005").WithCapacity(1000, 400).WithDirectory("d");
    VolumeInfo volume;
    EXPECT_EQ(Text(GetVolume(33, volume)), "OK");
    EXPECT_EQ(volume.volumeId, 33);
    EXPECT_EQ(RecordText(volume.record.label), "Sales 2005");
    EXPECT_EQ(volume.record.totalCapacity, 1000U);
    EXPECT_EQ(volume.aspects, (Aspects{"d"}));
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeDetail V=33", "KrvVolumeAspects V=33 bufferSize=1",
                                  "KrvVolumeAspects V=33 bufferSize=3"}));
}

TEST_F(GetVolumeTest, AsksForNoAspectsWhenTheVolumeCannotBeDescribed) {
    VolumeInfo volume;
    EXPECT_EQ(Text(GetVolume(33, volume)), "service error 1001: There is no volume 33.");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeDetail V=33"}));
}

TEST_F(GetVolumeTest, HandsOnTheErrorOfTheAspects) {
    Farm().AddVolume(33, "x");
    Fake().FailCall("KrvVolumeAspects", Occurrence::Every(), {9, "no"});
    VolumeInfo volume;
    EXPECT_EQ(Text(GetVolume(33, volume)), "service error 9: no");
}

TEST_F(GetVolumeTest, ForgetsTheAspectsOfAnotherVolume) {
    Farm().AddVolume(33, "x").WithDirectory("old");
    Farm().AddVolume(34, "y");
    VolumeInfo volume;
    ASSERT_TRUE(GetVolume(33, volume).IsOk());
    ASSERT_TRUE(GetVolume(34, volume).IsOk());
    EXPECT_EQ(volume.aspects, Aspects{});
}

TEST(VolumeInfo, HasNoIdAtFirst) {
    EXPECT_EQ(VolumeInfo{}.volumeId, -1);
}

}  // namespace
}  // namespace krvcmd
