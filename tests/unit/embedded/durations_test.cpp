#include <gtest/gtest.h>

#include "embedded/model/media_types.h"
#include "embedded/simulated/durations/call_duration.h"
#include "embedded/simulated/durations/deadline.h"
#include "embedded/simulated/durations/duration_profile.h"
#include "embedded/simulated/durations/duration_text.h"
#include "embedded/simulated/durations/simulated_time.h"

namespace embedded_test {
namespace {

using embedded::DurationProfile;
using embedded::HandledMedium;
using embedded::HandledSides;
using embedded::SimulatedTime;
using embedded::StoredJournalEntry;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr uint32_t kDvdRam = 12;
constexpr uint32_t kBdR = 27;

// Each duration is another power of ten, so that a sum shows its parts.
constexpr const char* kProfile = R"(
format = 1
name = "test"
move = 1
move_per_slot = 0.25
turn = 10
load = 100
unload = 1000
spin_up = 10000
read = 100000
format_disc = 200000
format_per_gb = 1000
certify_per_gb = 10000
finalize = 300000
erase = 400000
[[medium]]
types = ["BD-R"]
read = 500000
)";

DurationProfile Profile() {
    const embedded::ProfileResult result = embedded::ReadDurationProfile(kProfile);
    EXPECT_TRUE(result.problems.empty());
    return result.profile;
}

struct DurationCase {
    const char* function;
    HandledMedium medium;
    double moving;   // seconds
    double driving;  // seconds
};

TEST(CallDuration, IsTheSumOfWhatRobotAndDriveDo) {
    const HandledMedium moved{kDvdRam, 4, HandledSides::None, false};
    const HandledMedium sideA{kDvdRam, 0, HandledSides::A, false};
    const HandledMedium sideB{kDvdRam, 0, HandledSides::B, false};
    const HandledMedium both{kDvdRam, 0, HandledSides::Both, false};
    const HandledMedium certified{kDvdRam, 0, HandledSides::A, true};
    const HandledMedium otherType{kBdR, 0, HandledSides::A, false};
    const std::vector<DurationCase> cases = {
        {"KrvMediaExport", moved, 2, 0},
        {"KrvMediaImport", sideA, 2, 111100},
        {"KrvMediaScan", sideA, 2, 111100},
        {"KrvMediaScan", sideB, 22, 111100},
        {"KrvMediaScan", both, 22, 222200},
        {"KrvMediaScan", otherType, 2, 511100},
        // 4.7 GB
        {"KrvVolumeFormat", sideA, 2, 211100 + 4700},
        {"KrvVolumeFormat", certified, 2, 211100 + 4700 + 47000},
        {"KrvVolumeFinalize", sideA, 2, 311100},
        {"KrvVolumeErase", sideB, 22, 411100},
        {"KrvGetSlot", sideA, 0, 0},
    };
    for (const DurationCase& expected : cases) {
        const embedded::CallDuration found = DurationOf(Profile(), expected.function, expected.medium);
        EXPECT_DOUBLE_EQ(found.moving.count(), expected.moving) << expected.function;
        EXPECT_DOUBLE_EQ(found.driving.count(), expected.driving) << expected.function;
    }
}

TEST(DurationProfileFile, HasDefaultsForEveryTypeOfMedium) {
    for (const std::string_view text : {embedded::SmallProfileText(), embedded::LargeProfileText()}) {
        const embedded::ProfileResult result = embedded::ReadDurationProfile(text);
        EXPECT_TRUE(result.problems.empty());
        for (const embedded::MediaType& type : embedded::AllMediaTypes()) {
            const embedded::DriveDurations& drive = result.profile.Of(type.code);
            EXPECT_GT(drive.spinUp.count(), 0) << type.name;
            EXPECT_GT(drive.read.count(), 0) << type.name;
            EXPECT_GT(drive.formatDisc.count(), 0) << type.name;
        }
    }
}

TEST(DurationProfileFile, DefaultDependsOnTheNumberOfSlots) {
    EXPECT_EQ(embedded::DefaultProfile(0).name, "small jukebox");
    EXPECT_EQ(embedded::DefaultProfile(100).name, "small jukebox");
    EXPECT_EQ(embedded::DefaultProfile(101).name, "large jukebox");
}

TEST(DurationProfileFile, DurationsReachFromNothingToTenMillionSeconds) {
    for (const double duration : {0.0, 10'000'000.0}) {
        const std::string text = "format = 1\nmove = " + std::to_string(duration) + "\n";
        const embedded::ProfileResult result = embedded::ReadDurationProfile(text);
        EXPECT_TRUE(result.problems.empty()) << text;
        EXPECT_DOUBLE_EQ(result.profile.move.count(), duration);
    }
}

struct MistakeCase {
    const char* text;
    const char* problem;
};

TEST(DurationProfileFile, MistakesAreReportedWithLineAndField) {
    const std::vector<MistakeCase> cases = {
        {"move = 1\n", "FILE:1: format: is missing"},
        {"format = 1\n", "FILE:1: move: is missing"},
        {"format = 0\nmove = 1\n", "FILE:1: format: must be 1"},
        {"format = \"1\"\nmove = 1\n", "FILE:1: format: must be an integer"},
        {"format = 1\nmove = -1\n", "FILE:2: move: must be a number of seconds from 0 to 10000000"},
        {"format = 1\nmove = 10000000.5\n", "FILE:2: move: must be a number of seconds from 0 to 10000000"},
        {"format = 1\nmove = nan\n", "FILE:2: move: must be a number of seconds from 0 to 10000000"},
        {"format = 1\nmove = \"5\"\n", "FILE:2: move: must be a number of seconds from 0 to 10000000"},
        {"format = 1\nmove = 1\nlod = 1\n", "FILE:3: lod: is not a known field"},
        {"format = 1\nmove = 1\nl\xC3\xA4nge = 1\n", "FILE:3: unexpected non-ASCII character"},
        {"format = 1\nmove = 1\n[[medium]]\nread = 1\n", "FILE:3: medium[1].types: is missing"},
        {"format = 1\nmove = 1\n[[medium]]\ntypes = [\"CDR\"]\n",
         "FILE:4: medium[1].types: \"CDR\" is not a media type"},
        {"format = 1\nmove = 1\n[[medium]]\ntypes = [\"CD-R\", \"CD-R\"]\n",
         "FILE:4: medium[1].types: \"CD-R\" has durations already"},
    };
    for (const MistakeCase& mistake : cases) {
        const embedded::ProfileResult result = embedded::ReadDurationProfile(mistake.text);
        ASSERT_EQ(result.problems.size(), 1U) << mistake.text;
        EXPECT_EQ(embedded::ProblemText("FILE", result.problems.front()), mistake.problem);
    }
    EXPECT_EQ(embedded::ReadDurationProfile("move = ").problems.size(), 1U);
}

TEST(DurationText, IsInSecondsMinutesOrHours) {
    EXPECT_EQ(embedded::DurationText(milliseconds(400)), "0 s");
    EXPECT_EQ(embedded::DurationText(milliseconds(119'400)), "119 s");
    EXPECT_EQ(embedded::DurationText(seconds(120)), "2 min");
    EXPECT_EQ(embedded::DurationText(minutes(59)), "59 min");
    EXPECT_EQ(embedded::DurationText(seconds(3599)), "1 h");
    EXPECT_EQ(embedded::DurationText(hours(3) + minutes(40)), "3 h 40 min");
}

// ---- Simulated time. An export takes a second.

constexpr const char* kOneSecond = "format = 1\nmove = 1\n";

struct Call {
    uint64_t session;
    int realStart;  // milliseconds; the call really takes one
    int64_t jukebox;
};

StoredJournalEntry EntryOf(const Call& call) {
    StoredJournalEntry entry;
    entry.time = std::chrono::system_clock::time_point(milliseconds(call.realStart));
    entry.duration = 1000;
    entry.session = call.session;
    entry.function = "KrvMediaExport";
    entry.item.jukebox = call.jukebox;
    entry.medium = HandledMedium{kDvdRam, 0, HandledSides::None, false};
    return entry;
}

SimulatedTime Simulate(const std::vector<StoredJournalEntry>& entries) {
    const std::vector<embedded::TimedJukebox> jukeboxes = {{8, "MyBox", 12}, {29, "Sales Tower", 300}};
    return SimulateTime(entries, jukeboxes, embedded::ReadDurationProfile(kOneSecond).profile);
}

SimulatedTime Simulate(const std::vector<Call>& calls) {
    std::vector<StoredJournalEntry> entries;
    for (const Call& call : calls)
        entries.push_back(EntryOf(call));
    return Simulate(entries);
}

std::vector<int64_t> StartsOf(const SimulatedTime& time) {
    std::vector<int64_t> starts;
    for (const embedded::CallTime& call : time.calls)
        starts.push_back(std::chrono::duration_cast<seconds>(call.start).count());
    return starts;
}

using Starts = std::vector<int64_t>;

TEST(SimulatedTimeOfAJournal, CallsOfASessionComeOneAfterTheOther) {
    const SimulatedTime time = Simulate({{1, 0, 8}, {1, 5, 29}, {1, 7, 8}});
    EXPECT_EQ(StartsOf(time), (Starts{0, 1, 2}));
    EXPECT_EQ(time.end, seconds(3));
}

TEST(SimulatedTimeOfAJournal, SessionsThatDidNotOverlapComeOneAfterTheOther) {
    EXPECT_EQ(StartsOf(Simulate({{1, 0, 8}, {2, 5, 29}, {3, 10, 8}})), (Starts{0, 1, 2}));
}

TEST(SimulatedTimeOfAJournal, SessionsThatOverlappedWorkSideBySideInDifferentJukeboxes) {
    const SimulatedTime time = Simulate({{1, 0, 8}, {2, 1, 29}, {1, 10, 8}, {2, 11, 29}});
    EXPECT_EQ(StartsOf(time), (Starts{0, 0, 1, 1}));
    EXPECT_EQ(time.end, seconds(2));
}

TEST(SimulatedTimeOfAJournal, JukeboxHandlesOneCallAtATime) {
    EXPECT_EQ(StartsOf(Simulate({{1, 0, 8}, {2, 1, 8}, {1, 10, 8}, {2, 11, 8}})), (Starts{0, 1, 2, 3}));
}

TEST(SimulatedTimeOfAJournal, SessionAfterParallelOnesWaitsForTheLongest) {
    EXPECT_EQ(StartsOf(Simulate({{1, 0, 8}, {2, 1, 29}, {1, 3, 8}, {2, 4, 8}, {3, 20, 29}})),
              (Starts{0, 0, 1, 2, 3}));
}

TEST(SimulatedTimeOfAJournal, EntriesNeedNotBeInOrder) {
    EXPECT_EQ(StartsOf(Simulate({{2, 5, 29}, {1, 0, 8}})), (Starts{1, 0}));
}

// From the first slot, a move takes 5 s in a small jukebox and 7 s in a large one.
TEST(SimulatedTimeOfAJournal, JukeboxHasTheDefaultProfileForItsNumberOfSlots) {
    const std::vector<embedded::TimedJukebox> jukeboxes = {{8, "MyBox", 100}, {29, "Sales Tower", 101}};
    const std::vector<StoredJournalEntry> entries = {EntryOf({1, 0, 8}), EntryOf({1, 5, 29}),
                                                     EntryOf({1, 10, 77})};
    const SimulatedTime time = SimulateTime(entries, jukeboxes, std::nullopt);
    EXPECT_EQ(time.calls[0].moving, seconds(5));
    EXPECT_EQ(time.calls[1].moving, seconds(7));
    EXPECT_EQ(time.calls[2].moving, seconds(5)) << "a jukebox that is no longer there counts as small";
}

TEST(SimulatedTimeOfAJournal, CallWithoutAMediumTakesNoTime) {
    StoredJournalEntry look = EntryOf({1, 0, 8});
    look.medium.reset();
    const SimulatedTime time = Simulate({look, EntryOf({1, 5, 8})});
    EXPECT_EQ(StartsOf(time), (Starts{0, 0}));
    EXPECT_EQ(time.end, seconds(1));
    EXPECT_FALSE(IsTimed(look));
}

TEST(SimulatedTimeOfAJournal, CallThatReallyTookLongerCountsWithThatTime) {
    StoredJournalEntry delayed = EntryOf({1, 0, 8});
    delayed.duration = microseconds(seconds(40)).count();
    const SimulatedTime time = Simulate(std::vector<StoredJournalEntry>{delayed});
    EXPECT_EQ(time.end, seconds(40));
    EXPECT_EQ(time.jukeboxes.front().moving, seconds(1));
}

TEST(SimulatedTimeOfAJournal, EachJukeboxAtWorkHasALine) {
    EXPECT_EQ(TimeLines(Simulate({{1, 0, 29}, {1, 2, 29}})),
              (std::vector<std::string>{"about 2 s in jukebox Sales Tower, of which 2 s moving"}));
    EXPECT_EQ(TimeLines(Simulate({{1, 0, 29}, {2, 1, 8}, {1, 2, 29}, {2, 3, 8}})),
              (std::vector<std::string>{"about 2 s in jukebox MyBox, of which 2 s moving",
                                        "about 2 s in jukebox Sales Tower, of which 2 s moving",
                                        "about 2 s in all"}));
    EXPECT_TRUE(TimeLines(Simulate(std::vector<Call>{})).empty());
}

TEST(Deadline, IsATimeOfDay) {
    EXPECT_EQ(embedded::ReadTimeOfDay("06:05"), minutes(365));
    for (const char* text : {"", "6:05", "24:00", "12:60", "12.30", "ab:cd", "12:3a", "012:30", "+1:00"})
        EXPECT_EQ(embedded::ReadTimeOfDay(text), std::nullopt) << text;
}

TEST(Deadline, IsTheNextOneAfterTheStart) {
    const auto late = [](const char* start, microseconds duration, const char* deadline) {
        return embedded::LateText(*embedded::ReadTimeOfDay(start), duration,
                                  *embedded::ReadTimeOfDay(deadline));
    };
    EXPECT_EQ(late("22:00", hours(8), "06:00"), std::nullopt);
    EXPECT_EQ(late("22:00", hours(8) + minutes(40), "06:00"),
              "Started at 22:00, it ends about 40 min after the deadline 06:00.");
    EXPECT_EQ(late("05:00", minutes(61), "06:00"),
              "Started at 05:00, it ends about 60 s after the deadline 06:00.");
    EXPECT_EQ(late("06:00", hours(24), "06:00"), std::nullopt);
    EXPECT_NE(late("06:00", hours(25), "06:00"), std::nullopt);
}

}  // namespace
}  // namespace embedded_test
