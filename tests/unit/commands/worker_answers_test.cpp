// Every answer at every position of a small jukebox, for every form of walk.

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/service_fixture.h"
#include "tests/unit/commands/support/scripted_worker.h"

namespace krvcmd {
namespace {

using test::ScriptedWorker;
using test::SlotsOf;
using test::Text;
using Index = std::optional<int32_t>;

constexpr auto kNone = std::nullopt;

constexpr int kSlotsPerMagazine = 3;
constexpr int kSlots = 2 * kSlotsPerMagazine;

std::string Position(int index) {
    return std::to_string(index / kSlotsPerMagazine) + "/" + std::to_string(index % kSlotsPerMagazine);
}

// One form of walk: its arguments and the slots that it can reach, counted through the jukebox.
struct Walk {
    std::string name;
    int32_t repeat;
    Index magazine;
    Index slot;
    int first;
    int end;  // behind the last one

    bool IsSingle() const { return repeat == 0 && slot.has_value(); }
};

const std::vector<Walk>& Walks() {
    static const std::vector<Walk> walks = {
        {"one slot", 0, 0, 1, 1, 2},
        {"one slot of the jukebox", 0, kNone, 4, 4, 5},
        {"first magazine", 0, 0, kNone, 0, 3},
        {"second magazine", 0, 1, kNone, 3, 6},
        {"jukebox", 0, kNone, kNone, 0, 6},
        {"one repeat from a slot", 1, 0, 1, 1, 6},
        {"three repeats from a slot", 3, 0, 1, 1, 6},
        {"three repeats from a slot of the jukebox", 3, kNone, 2, 2, 6},
        {"two repeats from a magazine", 2, 1, kNone, 3, 6},
        {"four repeats from the jukebox", 4, kNone, kNone, 0, 6},
        {"more repeats than slots", 50, 0, 0, 0, 6},
        {"negative repeat", -2, 0, 1, 1, 6},
    };
    return walks;
}

struct Expected {
    int worked;  // slots that are worked on, from the first on
    std::string result;
};

// What follows from one answer `code` at the slot `failing`, rule by rule.
Expected Expect(const Walk& walk, int failing, uint32_t code, bool stopWhenNoMedium) {
    const int reachable = walk.end - walk.first;
    // Without a failure a walk ends with its slots, with its repeats, or, negative, after one slot.
    int wanted = reachable;
    if (walk.repeat > 0) wanted = std::min(walk.repeat, reachable);
    if (walk.repeat < 0) wanted = 1;

    const int before = failing - walk.first;
    const bool isReached = before >= 0 && before < wanted;
    if (!isReached) return {wanted, "OK"};

    const std::string error = "service error " + std::to_string(code) + ": no";
    const bool isPassedOver = code == 502 || code == 501;
    if (code == 2) return {before + 1, "OK"};
    if (walk.IsSingle() || !isPassedOver) return {before + 1, error};
    if (code == 501 && stopWhenNoMedium) return {before + 1, "OK"};
    // Passed over: the slot does not count as a repeat, so that one more slot is worked on for it. A
    // negative count is used up by the first slot, whatever its answer.
    if (walk.repeat < 0) return {1, "OK"};
    return {walk.repeat > 0 ? std::min(walk.repeat + 1, reachable) : wanted, "OK"};
}

class WorkerAnswersTest : public test::ServiceTest {
  protected:
    WorkerAnswersTest() {
        Farm().AddJukebox(8, "Tower").WithMagazine(kSlotsPerMagazine).WithMagazine(kSlotsPerMagazine);
    }
};

TEST_F(WorkerAnswersTest, SteerEveryWalkAtEveryPosition) {
    for (const Walk& walk : Walks()) {
        for (const bool stopWhenNoMedium : {false, true}) {
            for (const uint32_t code : {0U, 1U, 2U, 3U, 4U, 7U, 500U, 501U, 502U, 503U, 0x7FFFFFFFU}) {
                for (int failing = 0; failing < kSlots; ++failing) {
                    ScriptedWorker worker;
                    worker.Answers(Position(failing), Status::ServiceError(code, "no"));
                    const Status status =
                        worker.DoWork({walk.repeat, stopWhenNoMedium}, SlotsOf(8, walk.magazine, walk.slot));

                    const Expected expected = Expect(walk, failing, code, stopWhenNoMedium);
                    std::string visited;
                    for (int i = 0; i < expected.worked; ++i)
                        visited += Position(walk.first + i) + " ";
                    EXPECT_EQ(worker.Visited() + Text(status), visited + expected.result)
                        << walk.name << ", " << code << " at " << Position(failing)
                        << (stopWhenNoMedium ? ", ending at 501" : "");
                }
            }
        }
    }
}

TEST_F(WorkerAnswersTest, LetARunOfUnusableSlotsPassToTheEnd) {
    for (const uint32_t code : {501U, 502U}) {
        ScriptedWorker worker;
        for (int i = 0; i < kSlots; ++i)
            worker.Answers(Position(i), Status::ServiceError(code, "no"));
        EXPECT_EQ(Text(worker.DoWork({.repeat = 2}, SlotsOf(8, 0, 0))), "OK");
        EXPECT_EQ(worker.Visited(), "0/0 0/1 0/2 1/0 1/1 1/2 ");
    }
}

TEST_F(WorkerAnswersTest, EndTheWalkAtCode7BeforeARepeatIsCounted) {
    ScriptedWorker worker;
    worker.Answers("0/0", Status::ServiceError(502, "no"));
    worker.Answers("0/2", Status::ServiceError(7, "interrupted"));
    EXPECT_EQ(Text(worker.DoWork({.repeat = 3}, SlotsOf(8, 0, 0))), "service error 7: interrupted");
    EXPECT_EQ(worker.Visited(), "0/0 0/1 0/2 ");
}

}  // namespace
}  // namespace krvcmd
