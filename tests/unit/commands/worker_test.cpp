#include "krvcmd/commands/base/worker.h"

#include <limits>

#include "tests/support/service_fixture.h"
#include "tests/unit/commands/support/scripted_worker.h"

namespace krvcmd {
namespace {

using krvfake::Occurrence;
using test::Calls;
using test::ScriptedWorker;
using test::SlotsOf;
using test::Text;
using Index = std::optional<int32_t>;

constexpr auto kNone = std::nullopt;
constexpr bool kStop = true;  // when there is no medium

// Walks over jukebox 8, which has two magazines of three slots.
class WorkerTest : public test::ServiceTest {
  protected:
    WorkerTest() : m_jukebox(Farm().AddJukebox(8, "Tower").WithMagazine(3).WithMagazine(3)) {}

    // The positions that were worked on (zero-based, magazine/slot), then the walk's result.
    static std::string Walk(ScriptedWorker& worker, int32_t repeat, Index magazine, Index slot,
                            bool stopWhenNoMedium = false) {
        const Status status = worker.DoWork({repeat, stopWhenNoMedium}, SlotsOf(8, magazine, slot));
        return worker.Visited() + Text(status);
    }

    static std::string Walk(int32_t repeat, Index magazine, Index slot) {
        ScriptedWorker worker;
        return Walk(worker, repeat, magazine, slot);
    }

    krvfake::Jukebox& m_jukebox;
};

TEST_F(WorkerTest, WorksOnASingleSlotOnce) {
    EXPECT_EQ(Walk(0, 1, 0), "1/0 OK");
    EXPECT_EQ(Walk(0, kNone, 3), "1/0 OK");  // numbered through the jukebox
    EXPECT_EQ(Walk(0, 0, 2), "0/2 OK");
}

TEST_F(WorkerTest, WorksOnEverySlotOfAMagazine) {
    EXPECT_EQ(Walk(0, 0, kNone), "0/0 0/1 0/2 OK");
    EXPECT_EQ(Walk(0, 1, kNone), "1/0 1/1 1/2 OK");
}

TEST_F(WorkerTest, WorksOnEverySlotOfAJukebox) {
    EXPECT_EQ(Walk(0, kNone, kNone), "0/0 0/1 0/2 1/0 1/1 1/2 OK");
}

TEST_F(WorkerTest, RepeatsFromTheAddressedSlotAcrossMagazines) {
    EXPECT_EQ(Walk(3, 0, 1), "0/1 0/2 1/0 OK");
    EXPECT_EQ(Walk(2, kNone, 2), "0/2 1/0 OK");
    EXPECT_EQ(Walk(1, 1, 1), "1/1 OK");
}

TEST_F(WorkerTest, RepeatsFromTheFirstSlotOfTheAddressedMagazineOrJukebox) {
    EXPECT_EQ(Walk(2, 1, kNone), "1/0 1/1 OK");
    EXPECT_EQ(Walk(4, 0, kNone), "0/0 0/1 0/2 1/0 OK");
    EXPECT_EQ(Walk(2, kNone, kNone), "0/0 0/1 OK");
}

TEST_F(WorkerTest, EndsWithSuccessWhenThereAreFewerSlotsThanRepeats) {
    EXPECT_EQ(Walk(100, 1, 1), "1/1 1/2 OK");
    EXPECT_EQ(Walk(std::numeric_limits<int32_t>::max(), 1, 2), "1/2 OK");
}

TEST_F(WorkerTest, WorksOnceForANegativeRepeat) {
    EXPECT_EQ(Walk(-1, 0, 0), "0/0 OK");
    EXPECT_EQ(Walk(std::numeric_limits<int32_t>::min(), 0, kNone), "0/0 OK");
}

TEST_F(WorkerTest, CountsOnlySuccessesAsRepeats) {
    ScriptedWorker worker;
    worker.Answers("0/1", Status::ServiceError(502, "not usable"));
    EXPECT_EQ(Walk(worker, 3, 0, 0), "0/0 0/1 0/2 1/0 OK");
}

TEST_F(WorkerTest, ReportsTheFailureOfASingleSlot) {
    for (const uint32_t code : {3U, 4U, 7U, 501U, 502U, 1000U}) {
        ScriptedWorker worker;
        worker.Answers("0/0", Status::ServiceError(code, "no"));
        EXPECT_EQ(Walk(worker, 0, 0, 0), "0/0 service error " + std::to_string(code) + ": no");
    }
}

TEST_F(WorkerTest, TakesCode2OfASingleSlotAsSuccess) {
    ScriptedWorker service;
    service.Answers("0/0", Status::ServiceError(2, "no"));
    EXPECT_EQ(Walk(service, 0, 0, 0), "0/0 OK");
    ScriptedWorker system;
    system.Answers("0/0", Status::SystemError(2));
    EXPECT_EQ(Walk(system, 0, 0, 0), "0/0 OK");
}

TEST_F(WorkerTest, KeepsCode501OfASingleSlotEvenWhereItEndsWalks) {
    ScriptedWorker worker;
    worker.Answers("0/0", Status::ServiceError(501, "none"));
    EXPECT_EQ(Walk(worker, 0, 0, 0, kStop), "0/0 service error 501: none");
}

TEST_F(WorkerTest, EndsAtCode501WithSuccessOnlyWhereNoMediumEndsTheWalk) {
    ScriptedWorker ending;
    ending.Answers("0/1", Status::ServiceError(501, "none"));
    EXPECT_EQ(Walk(ending, 0, 0, kNone, kStop), "0/0 0/1 OK");
    ScriptedWorker passing;
    passing.Answers("0/1", Status::ServiceError(501, "none"));
    EXPECT_EQ(Walk(passing, 0, 0, kNone), "0/0 0/1 0/2 OK");
}

TEST_F(WorkerTest, EndsAtCode7WithThatError) {
    ScriptedWorker worker;
    worker.Answers("0/1", Status::ServiceError(7, "interrupted"));
    EXPECT_EQ(Walk(worker, 0, kNone, kNone), "0/0 0/1 service error 7: interrupted");
}

TEST_F(WorkerTest, EndsAtAnErrorWithCodeZeroToo) {
    ScriptedWorker worker;
    worker.Answers("0/1", Status::ServiceError(0, "odd"));
    EXPECT_EQ(Walk(worker, 0, kNone, kNone), "0/0 0/1 service error 0: odd");
}

TEST_F(WorkerTest, EndsAtCode2InTheMiddleOfAWalkWithSuccess) {
    ScriptedWorker worker;
    worker.Answers("0/1", Status::ServiceError(2, "no"));
    EXPECT_EQ(Walk(worker, 0, kNone, kNone), "0/0 0/1 OK");
}

TEST_F(WorkerTest, HandsJukeboxAndSideOnToTheWork) {
    for (const int32_t side : {-1, 0, 1, 2, 7}) {
        ScriptedWorker worker;
        ItemAddress address = SlotsOf(8, 0, 0);
        address.side = side;
        EXPECT_TRUE(worker.DoWork({}, address).IsOk());
        EXPECT_EQ(worker.Last().jukeboxId, 8);
        EXPECT_EQ(worker.Last().side, side);
    }
}

TEST_F(WorkerTest, ReportsAnAddressThatDoesNotExistWithoutWork) {
    EXPECT_EQ(Walk(0, 2, 0), "error 2");  // code 2 of the address itself is no success
    EXPECT_EQ(Walk(0, 2, kNone), "error 2");
    EXPECT_EQ(Walk(0, 0, 3), "error 22");
    EXPECT_EQ(Walk(0, kNone, 6), "error 22");
    EXPECT_EQ(Walk(5, 2, kNone), "error 2");
    ScriptedWorker worker;
    EXPECT_EQ(Text(worker.DoWork({}, SlotsOf(9, kNone, kNone))),
              "service error 1001: There is no jukebox 9.");
    EXPECT_EQ(worker.Visited(), "");
}

TEST_F(WorkerTest, WorksOnceInAMagazineThatCannotBeDescribed) {
    m_jukebox.WithMagazine(1);
    Fake().FailCall("KrvGetMagazine J=8 M=1", Occurrence::Every(), {9, "missing"});
    EXPECT_EQ(Walk(0, kNone, kNone), "0/0 0/1 0/2 1/0 2/0 OK");
}

TEST_F(WorkerTest, AsksForTheNextMagazineEvenWhenEnoughIsDone) {
    // The step to the next slot comes before the count is looked at.
    EXPECT_EQ(Walk(1, 0, 2), "0/2 OK");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0", "KrvGetMagazine J=8 M=1"}));
}

TEST_F(WorkerTest, SkipsDriveEntries) {
    const ItemAddressList firstDrive({}, [](ItemAddress& entry, int32_t number) { entry.drive = number - 1; },
                                     {{.from = 1, .to = 1}});
    ScriptedWorker worker;
    EXPECT_TRUE(worker.WorkOnEntries(AddressKind::Drive, firstDrive, 8, {}).IsOk());
    EXPECT_EQ(worker.Visited(), "");
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(WorkerTest, AsksForNoOtherMagazineAfterASingleSlotOrAMagazine) {
    EXPECT_EQ(Walk(0, 0, 2), "0/2 OK");
    EXPECT_EQ(Walk(0, 0, kNone), "0/0 0/1 0/2 OK");
    const Calls once = {"KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0"};
    EXPECT_EQ(TakeCalls(), (Calls{once[0], once[1], once[0], once[1]}));
}

// ---- Volumes ---------------------------------------------------------------------------------

class WorkerVolumeTest : public WorkerTest {
  protected:
    std::string WalkVolume(int32_t volumeId) {
        const Status status = m_worker.DoVolume(volumeId);
        return m_worker.Visited() + Text(status);
    }

    ScriptedWorker m_worker;
};

TEST_F(WorkerVolumeTest, WorksOnceOnTheSideThatHoldsTheVolume) {
    Farm().AddVolume(33, "x").At(8, 1, 2, krvfake::kSideB);
    EXPECT_EQ(WalkVolume(33), "1/2 OK");
    EXPECT_EQ(m_worker.Last().jukeboxId, 8);
    EXPECT_EQ(m_worker.Last().side, 1);
    EXPECT_EQ(TakeCalls(),
              (Calls{"KrvVolumeLocations V=33 room=1", "KrvGetJukebox J=8", "KrvGetMagazine J=8 M=1"}));
}

TEST_F(WorkerVolumeTest, AsksForOneLocationOfAVolumeThatHasSeveral) {
    Farm().AddVolume(33, "x").At(8, 1, 2, krvfake::kSideA).At(8, 0, 0, krvfake::kSideA);
    EXPECT_EQ(WalkVolume(33), "1/2 OK");
    EXPECT_EQ(TakeCalls().front(), "KrvVolumeLocations V=33 room=1");
}

TEST_F(WorkerVolumeTest, LeavesAVolumeThatLiesNowhereAlone) {
    Farm().AddVolume(33, "x");  // code 500
    EXPECT_EQ(WalkVolume(33), "OK");
    Farm().AddVolume(34, "y").locationCounts = {0};
    EXPECT_EQ(WalkVolume(34), "OK");
    EXPECT_EQ(TakeCalls(), (Calls{"KrvVolumeLocations V=33 room=1", "KrvVolumeLocations V=34 room=1"}));
}

TEST_F(WorkerVolumeTest, HandsOnEveryOtherErrorOfTheLocation) {
    EXPECT_EQ(WalkVolume(99), "service error 1001: There is no volume 99.");
}

TEST_F(WorkerVolumeTest, ReportsTheFailureOfTheWork) {
    Farm().AddVolume(33, "x").At(8, 1, 2, krvfake::kSideA);
    m_worker.Answers("1/2", Status::ServiceError(501, "none"));
    EXPECT_EQ(WalkVolume(33), "1/2 service error 501: none");
}

TEST_F(WorkerVolumeTest, SurvivesLocationsThatAreNone) {
    constexpr int32_t kLargest = std::numeric_limits<int32_t>::max();
    Farm().AddVolume(33, "x").SaysItIsAt(8, kLargest, kLargest, kLargest);
    EXPECT_EQ(WalkVolume(33), "error 2");
    Farm().AddVolume(34, "x").SaysItIsAt(8, 0, kLargest, 0);
    EXPECT_EQ(WalkVolume(34), "error 22");
    // An index of -1 stands for the first magazine and slot.
    Farm().AddVolume(35, "x").SaysItIsAt(8, -1, -1, -1);
    EXPECT_EQ(WalkVolume(35), "0/0 OK");
}

}  // namespace
}  // namespace krvcmd
