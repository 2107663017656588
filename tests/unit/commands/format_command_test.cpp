#include "krvcmd/commands/actions/format_command.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::kSideA;
using krvfake::kSideB;
using krvfake::Occurrence;
using test::Calls;
using test::Words;

constexpr uint32_t kNotPresent = 1;  // state of a side
constexpr uint32_t kHasFileSystem = 6;

// Jukebox 8 with three slots: a double-sided medium, one whose side B is not present, and a double-sided
// one again. Volume 33 lies on side B of the first.
class FormatTest : public test::CommandTest {
  protected:
    FormatTest() {
        krvfake::Jukebox& jukebox = Farm().AddJukebox(8, "Tower").WithMagazine(3);
        for (const int32_t slot : {0, 1, 2}) {
            jukebox.WithSlot(0, slot, krvfake::slot_state::kFull, 20);
            jukebox.WithSide(0, slot, kSideA, {kHasFileSystem, 20, 1, 0});
            jukebox.WithSide(0, slot, kSideB, {slot == 1 ? kNotPresent : kHasFileSystem, 20, 1, 0});
        }
        Farm().AddVolume(33, "x").At(8, 0, 0, kSideB);
    }

    // Status and the calls behind those that resolve the address: side questions and what is done to sides.
    Calls Done(const Words& words) {
        Words line = {"format", "J@8"};
        line.insert(line.end(), words.begin(), words.end());
        const test::Outcome outcome = Work(line);
        Calls calls = {outcome.status};
        for (const std::string& call : outcome.calls) {
            if (!call.starts_with("KrvGetJukebox") && !call.starts_with("KrvGetMagazine"))
                calls.push_back(call);
        }
        return calls;
    }

    static std::string Formatted(int slot, int side,
                                 const std::string& options = "label=\"\" certify=0 sequential=0") {
        return "KrvVolumeFormat J=8 M=0 S=" + std::to_string(slot) + " side=" + std::to_string(side) + " " +
               options;
    }

    static std::string AskedForSideB(int slot) {
        return "KrvGetSide J=8 M=0 S=" + std::to_string(slot) + " side=1";
    }
};

TEST_F(FormatTest, FormatsBothSidesOfADoubleSidedMedium) {
    EXPECT_EQ(Done({"M1", "S1"}), (Calls{"OK", AskedForSideB(0), Formatted(0, 0), Formatted(0, 1)}));
}

TEST_F(FormatTest, FormatsSideAOnlyWhenSideBIsNotPresent) {
    EXPECT_EQ(Done({"M1", "S2"}), (Calls{"OK", AskedForSideB(1), Formatted(1, 0)}));
}

TEST_F(FormatTest, FormatsBothSidesWhenSideBCannotBeAskedAbout) {
    Fake().FailCall(AskedForSideB(1), Occurrence::Every(), {9, "no"}, krvfake::Outputs::Filled);
    EXPECT_EQ(Done({"M1", "S2"}), (Calls{"OK", AskedForSideB(1), Formatted(1, 0), Formatted(1, 1)}));
}

TEST_F(FormatTest, FormatsTheSideOfTheAddressWithoutAsking) {
    EXPECT_EQ(Done({"M1", "S1", ".A"}), (Calls{"OK", Formatted(0, 0)}));
    EXPECT_EQ(Done({"M1", "S1", ".B"}), (Calls{"OK", Formatted(0, 1)}));
    EXPECT_EQ(Done({"S2", ".B"}), (Calls{"OK", Formatted(1, 1)}));
}

TEST_F(FormatTest, TakesBothSidesTogetherAsNoSide) {
    EXPECT_EQ(Done({"S1", ".A", ".B"}), (Calls{"OK", AskedForSideB(0), Formatted(0, 0), Formatted(0, 1)}));
}

TEST_F(FormatTest, HandsOverLabelCertifyAndSequential) {
    EXPECT_EQ(Done({"S1", ".A", "label=Sales 2005"}),
              (Calls{"OK", Formatted(0, 0, "label=\"Sales 2005\" certify=0 sequential=0")}));
    EXPECT_EQ(Done({"S1", ".A", "certify"}),
              (Calls{"OK", Formatted(0, 0, "label=\"\" certify=1 sequential=0")}));
    EXPECT_EQ(Done({"S1", ".A", "sequential"}),
              (Calls{"OK", Formatted(0, 0, "label=\"\" certify=0 sequential=1")}));
    EXPECT_EQ(Done({"S1", ".A", "label=a", "certify", "sequential", "label=b"}),
              (Calls{"OK", Formatted(0, 0, "label=\"b\" certify=1 sequential=1")}));
    EXPECT_EQ(Done({"S1", ".A", "label="}), (Calls{"OK", Formatted(0, 0)}));
}

TEST_F(FormatTest, AcceptsALabelOf255BytesAndRefusesOneOf256) {
    const std::string longest(255, 'x');
    EXPECT_EQ(Done({"S1", ".A", "label", longest.c_str()}),
              (Calls{"OK", Formatted(0, 0, "label=\"" + longest + "\" certify=0 sequential=0")}));
    const std::string tooLong(256, 'x');
    EXPECT_EQ(Done({"S1", ".A", "label", tooLong.c_str()}), (Calls{"error 22"}));
    // Side A fails, so side B is not tried.
    EXPECT_EQ(Done({"S1", "label", tooLong.c_str()}), (Calls{"error 22", AskedForSideB(0)}));
}

TEST_F(FormatTest, IgnoresALongLabelWhereItIsNotNeeded) {
    const std::string tooLong(256, 'x');
    EXPECT_EQ(Done({"S1", ".A", "erase", "label", tooLong.c_str()}),
              (Calls{"OK", "KrvVolumeErase J=8 M=0 S=0 side=0"}));
}

TEST_F(FormatTest, Erases) {
    EXPECT_EQ(Done({"S1", "erase"}), (Calls{"OK", AskedForSideB(0), "KrvVolumeErase J=8 M=0 S=0 side=0",
                                            "KrvVolumeErase J=8 M=0 S=0 side=1"}));
    EXPECT_EQ(Done({"S2", "erase"}), (Calls{"OK", AskedForSideB(1), "KrvVolumeErase J=8 M=0 S=1 side=0"}));
    EXPECT_EQ(Done({"S1", ".B", "erase"}), (Calls{"OK", "KrvVolumeErase J=8 M=0 S=0 side=1"}));
}

TEST_F(FormatTest, FinalizesTheWholeMediumWhateverSideIsAddressed) {
    const Calls expected = {"OK", "KrvVolumeFinalize J=8 M=0 S=0 side=2"};
    EXPECT_EQ(Done({"S1", "finalize"}), expected);
    EXPECT_EQ(Done({"S1", ".A", "finalize"}), expected);
    EXPECT_EQ(Done({"S1", ".B", "finalize", "certify", "label=x"}), expected);
}

TEST_F(FormatTest, ErasesWithSide2WhenEraseAndFinalizeComeTogether) {
    EXPECT_EQ(Done({"S1", "finalize", "erase"}),
              (Calls{"OK", AskedForSideB(0), "KrvVolumeErase J=8 M=0 S=0 side=2"}));
    EXPECT_EQ(Done({"S1", ".A", "erase", "finalize"}), (Calls{"OK", "KrvVolumeErase J=8 M=0 S=0 side=2"}));
}

TEST_F(FormatTest, TriesNoOtherSideBehindTheFirstThatFails) {
    Fake().FailCall("KrvVolumeFormat", Occurrence::Nth(1), {9, "no"});
    EXPECT_EQ(Done({"S1"}), (Calls{"service error 9: no", AskedForSideB(0), Formatted(0, 0)}));
}

TEST_F(FormatTest, ReportsTheFailureOfTheSecondSide) {
    Fake().FailCall("KrvVolumeFormat", Occurrence::Nth(2), {9, "no"});
    EXPECT_EQ(Done({"S1"}).front(), "service error 9: no");
}

TEST_F(FormatTest, TakesNoCodeOfTheServiceAsDone) {
    Fake().FailCall("KrvVolumeFormat", Occurrence::Every(), {4, "no"});
    EXPECT_EQ(Done({"S1", ".A"}).front(), "service error 4: no");
}

TEST_F(FormatTest, PassesOverUnusableSlotsOfAWalk) {
    Fake().FailCall("KrvVolumeFinalize J=8 M=0 S=0 side=2", Occurrence::Every(), {501, "empty"});
    Fake().FailCall("KrvVolumeFinalize J=8 M=0 S=1 side=2", Occurrence::Every(), {502, "not usable"});
    EXPECT_EQ(Done({"finalize"}),
              (Calls{"OK", "KrvVolumeFinalize J=8 M=0 S=0 side=2", "KrvVolumeFinalize J=8 M=0 S=1 side=2",
                     "KrvVolumeFinalize J=8 M=0 S=2 side=2"}));
}

TEST_F(FormatTest, SucceedsWhenTheLastEntryDoes) {
    Fake().FailCall("KrvVolumeFinalize J=8 M=0 S=0 side=2", Occurrence::Every(), {9, "no"});
    EXPECT_EQ(Done({"S1,3", "finalize"}),
              (Calls{"OK", "KrvVolumeFinalize J=8 M=0 S=0 side=2", "KrvVolumeFinalize J=8 M=0 S=2 side=2"}));
}

TEST_F(FormatTest, FormatsTheSideThatHoldsAVolume) {
    EXPECT_EQ(StatusAndCalls({"format", "V@33", "label=Sales 2005"}),
              (Calls{"OK", "KrvVolumeLocations V=33 room=1", "KrvGetJukebox J=8", "KrvGetMagazine J=8 M=0",
                     Formatted(0, 1, "label=\"Sales 2005\" certify=0 sequential=0")}));
}

TEST_F(FormatTest, DoesNothingWithoutAnAddressOrALocation) {
    EXPECT_EQ(StatusAndCalls({"format", "erase"}), (Calls{"OK"}));
    EXPECT_EQ(StatusAndCalls({"format", "J@8", "S3-1"}), (Calls{"OK"}));
    Farm().AddVolume(34, "offline");
    EXPECT_EQ(StatusAndCalls({"format", "V@34"}), (Calls{"OK", "KrvVolumeLocations V=34 room=1"}));
}

TEST_F(FormatTest, EndsAtAnUnknownJukebox) {
    EXPECT_EQ(StatusAndCalls({"format", "J", "nobody", "erase"}).front(), "error 6");
}

TEST_F(FormatTest, RefusesASideThatNoMediumHas) {
    CFormat format;
    EXPECT_EQ(test::Text(format.Work({8, 0, 0, 3})), "error 22");
    EXPECT_EQ(TakeCalls(), Calls{});
    EXPECT_EQ(test::Text(format.Work({8, 0, 0, 2})), "OK");
    EXPECT_EQ(TakeCalls(), (Calls{AskedForSideB(0), Formatted(0, 0), Formatted(0, 1)}));
}

}  // namespace
}  // namespace krvcmd
