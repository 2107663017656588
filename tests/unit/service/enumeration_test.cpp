#include "krvcmd/service/access/enumeration.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>

#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::Text;
using Ids = std::vector<int32_t>;

class EnumerationTest : public test::ServiceTest {
  protected:
    static Ids IdsOf(IdEnumeration::NextFunction next) {
        Ids ids;
        IdEnumeration enumeration(next);
        while (enumeration.Next())
            ids.push_back(enumeration.Id());
        return ids;
    }

    static Ids Jukeboxes() { return IdsOf(KrvGetNextJukebox); }
};

TEST_F(EnumerationTest, StepsFromEachIdToTheNext) {
    for (const int32_t id : {8, 31, 11})
        Farm().AddJukebox(id, "x");
    EXPECT_EQ(Jukeboxes(), (Ids{8, 31, 11}));
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetNextJukebox previous=0", "KrvGetNextJukebox previous=8",
                                  "KrvGetNextJukebox previous=31", "KrvGetNextJukebox previous=11"}));
}

TEST_F(EnumerationTest, StepsThroughVolumesInTheSameWay) {
    Farm().AddVolume(33, "x");
    EXPECT_EQ(IdsOf(KrvGetNextVolume), (Ids{33}));
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetNextVolume previous=0", "KrvGetNextVolume previous=33"}));
}

TEST_F(EnumerationTest, IsEmptyWithoutItems) {
    EXPECT_EQ(Jukeboxes(), Ids{});
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetNextJukebox previous=0"}));
}

TEST_F(EnumerationTest, EndsWhenTheFirstStepFails) {
    Farm().AddJukebox(8, "x");
    Fake().FailCall("KrvGetNextJukebox", Occurrence::Nth(1), {9, "no"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Jukeboxes(), Ids{});
}

TEST_F(EnumerationTest, EndsWhenALaterStepFails) {
    for (const int32_t id : {8, 11, 29})
        Farm().AddJukebox(id, "x");
    Fake().FailCall("KrvGetNextJukebox", Occurrence::Nth(2), {9, "no"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Jukeboxes(), (Ids{8}));
    EXPECT_EQ(TakeCalls().size(), 2U);
}

TEST_F(EnumerationTest, EndsAtAnIdBelowOne) {
    Farm().EnumerateJukeboxes({8, 0, 11});
    EXPECT_EQ(Jukeboxes(), (Ids{8}));
    Farm().EnumerateJukeboxes({8, -1, 11});
    EXPECT_EQ(Jukeboxes(), (Ids{8}));
    Farm().EnumerateJukeboxes({std::numeric_limits<int32_t>::min(), 8});
    EXPECT_EQ(Jukeboxes(), Ids{});
}

TEST_F(EnumerationTest, TakesIdsInAnyOrderUpToTheLargest) {
    Farm().EnumerateJukeboxes({2147483647, 5, 7, 1});
    EXPECT_EQ(Jukeboxes(), (Ids{2147483647, 5, 7, 1}));
}

TEST_F(EnumerationTest, EndsWhenALibraryRepeatsAnIdForEver) {
    Farm().EnumerateJukeboxes({8, 11}, true);
    EXPECT_EQ(Jukeboxes(), (Ids{8, 11}));
}

// A library whose enumeration leads through `lead` IDs into a circle of `length` further ones.
std::map<uint32_t, uint32_t> g_successors;

KrvBool NextInCircle(KrvCallContext*, uint32_t previous, uint32_t* next) {
    *next = g_successors[previous];
    return 1;
}

void MakeCircle(uint32_t lead, uint32_t length) {
    g_successors.clear();
    for (uint32_t id = 0; id + 1 < lead + length; ++id)
        g_successors[id] = id + 1;
    g_successors[lead + length - 1] = lead;
}

TEST_F(EnumerationTest, EndsWhenALibraryGoesInCircles) {
    for (uint32_t lead = 1; lead <= 20; ++lead) {
        for (uint32_t length = 1; length <= 20; ++length) {
            MakeCircle(lead, length);
            const Ids ids = IdsOf(NextInCircle);
            // Each ID is met; the circle is noticed before it has been gone round many times.
            EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), lead + length - 1) << lead << " " << length;
            EXPECT_LE(ids.size(), 3 * (lead + length)) << lead << " " << length;
        }
    }
}

TEST_F(EnumerationTest, StopsAfterTheFirstIdThatIsNotHandled) {
    for (const int32_t id : {8, 11, 29})
        Farm().AddJukebox(id, "x");
    Ids handled;
    const Status status = ForEachJukebox([&handled](int32_t id) {
        handled.push_back(id);
        return id == 11 ? Status::SystemError(6) : Status();
    });
    EXPECT_EQ(Text(status), "error 6");
    EXPECT_EQ(handled, (Ids{8, 11}));
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetNextJukebox previous=0", "KrvGetNextJukebox previous=8"}));
}

TEST_F(EnumerationTest, SucceedsWhenThereIsNothingToHandle) {
    EXPECT_EQ(Text(ForEachJukebox([](int32_t) { return Status::SystemError(6); })), "OK");
    EXPECT_EQ(Text(ForEachVolume([](int32_t) { return Status::SystemError(6); })), "OK");
}

TEST_F(EnumerationTest, HandlesEveryVolume) {
    for (const int32_t id : {33, 34})
        Farm().AddVolume(id, "x");
    Ids handled;
    const auto handle = [&handled](int32_t id) {
        handled.push_back(id);
        return Status();
    };
    EXPECT_EQ(Text(ForEachVolume(handle)), "OK");
    EXPECT_EQ(handled, (Ids{33, 34}));
}

}  // namespace
}  // namespace krvcmd
