#include "krvcmd/commands/actions/media_commands.h"
#include "tests/support/command_fixture.h"

namespace krvcmd {
namespace {

using krvfake::kSideB;
using krvfake::Occurrence;
using test::Calls;
using test::Words;

// Import, export and scan in jukebox 8, with magazines of three and two slots. Volume 33 lies on side B of
// the second slot of the second magazine, volume 34 nowhere.
class MediaCommandsTest : public test::CommandTest {
  protected:
    MediaCommandsTest() {
        Farm().AddJukebox(8, "Tower").WithMagazine(3).WithMagazine(2);
        Farm().AddVolume(33, "x").At(8, 1, 1, kSideB);
        Farm().AddVolume(34, "y");
    }

    // The command's status and its calls that move or scan media, with the slot as magazine/slot.
    std::string Moves(const Words& words) {
        const test::Outcome outcome = Work(words);
        std::string text;
        for (const std::string& call : outcome.calls) {
            if (!call.starts_with("KrvMedia")) continue;
            const size_t magazine = call.find("M=") + 2;
            const size_t slot = call.find("S=") + 2;
            text += call.substr(magazine, 1) + "/" + call.substr(slot, 1) + " ";
        }
        return text + outcome.status;
    }

    void Answer(const char* call, int32_t code) { Fake().FailCall(call, Occurrence::Every(), {code, "no"}); }
};

TEST_F(MediaCommandsTest, CallTheLibraryWithTheSlot) {
    const Calls address = {"KrvGetJukebox J=8", "KrvGetJukebox J=8", "KrvGetMagazine J=8 M=1"};
    EXPECT_EQ(StatusAndCalls({"import", "J@8", "M2", "S1"}),
              (Calls{"OK", address[0], address[1], address[2], "KrvMediaImport J=8 M=1 S=0"}));
    EXPECT_EQ(StatusAndCalls({"export", "J@8", "M2", "S1"}),
              (Calls{"OK", address[0], address[1], address[2], "KrvMediaExport J=8 M=1 S=0"}));
    EXPECT_EQ(StatusAndCalls({"scan", "J@8", "M2", "S1"}),
              (Calls{"OK", address[0], address[1], address[2], "KrvMediaScan J=8 M=1 S=0 side=2"}));
}

TEST_F(MediaCommandsTest, DoNothingWithoutAnAddress) {
    for (const char* command : {"import", "export", "scan"}) {
        EXPECT_EQ(StatusAndCalls({command}), (Calls{"OK"})) << command;
        EXPECT_EQ(StatusAndCalls({command, "J@8", "S5-3"}), (Calls{"OK"})) << command;
    }
}

TEST_F(MediaCommandsTest, ResolveTheJukeboxOnceForAllEntries) {
    EXPECT_EQ(StatusAndCalls({"export", "J", "Tower", "M1", "S1,3"}),
              (Calls{"OK", "KrvGetNextJukebox previous=0", "KrvGetJukebox J=8", "KrvGetJukebox J=8",
                     "KrvGetMagazine J=8 M=0", "KrvMediaExport J=8 M=0 S=0", "KrvGetJukebox J=8",
                     "KrvGetMagazine J=8 M=0", "KrvMediaExport J=8 M=0 S=2"}));
}

TEST_F(MediaCommandsTest, EndAtAnUnknownJukebox) {
    for (const char* command : {"import", "export", "scan"}) {
        EXPECT_EQ(Moves({command, "J", "nobody"}), "error 6") << command;
        EXPECT_EQ(Moves({command, "J="}), "error 6") << command;
        EXPECT_EQ(Moves({command, "J@9"}), "service error 1001: There is no jukebox 9.") << command;
    }
}

TEST_F(MediaCommandsTest, WalkMagazinesAndJukeboxes) {
    for (const char* command : {"import", "export", "scan"}) {
        EXPECT_EQ(Moves({command, "J@8", "M1"}), "0/0 0/1 0/2 OK") << command;
        EXPECT_EQ(Moves({command, "J@8", "M2,1"}), "1/0 1/1 0/0 0/1 0/2 OK") << command;
        EXPECT_EQ(Moves({command, "J@8"}), "0/0 0/1 0/2 1/0 1/1 OK") << command;
        EXPECT_EQ(Moves({command, "J@8", "S3-4"}), "0/2 1/0 OK") << command;
    }
}

TEST_F(MediaCommandsTest, RepeatImportsAndExports) {
    for (const char* command : {"import", "export"}) {
        EXPECT_EQ(Moves({command, "J@8", "M1", "S2", "repeat=3"}), "0/1 0/2 1/0 OK") << command;
        EXPECT_EQ(Moves({command, "J@8", "repeat=2"}), "0/0 0/1 OK") << command;
        // A count of 0 is none: the whole magazine.
        EXPECT_EQ(Moves({command, "J@8", "M2", "repeat=0"}), "1/0 1/1 OK") << command;
    }
}

TEST_F(MediaCommandsTest, TakeTheLastRepeatAndTheFirstNumberOfItsList) {
    EXPECT_EQ(Moves({"export", "J@8", "repeat=4", "repeat=2"}), "0/0 0/1 OK");
    EXPECT_EQ(Moves({"export", "J@8", "repeat=2,4"}), "0/0 0/1 OK");
    EXPECT_EQ(Moves({"export", "J@8", "repeat=1-3"}), "0/0 OK");
}

TEST_F(MediaCommandsTest, RepeatForEachEntryAnew) {
    EXPECT_EQ(Moves({"export", "J@8", "S1,4", "repeat=2"}), "0/0 0/1 1/0 1/1 OK");
}

TEST_F(MediaCommandsTest, TakeCode4OfTheServiceAsDone) {
    Answer("KrvMediaImport J=8 M=0 S=0", 4);
    Answer("KrvMediaExport J=8 M=0 S=0", 4);
    Answer("KrvMediaScan J=8 M=0 S=0 side=2", 4);
    for (const char* command : {"import", "export", "scan"}) {
        EXPECT_EQ(Moves({command, "J@8", "M1", "S1"}), "0/0 OK") << command;
        EXPECT_EQ(Moves({command, "J@8", "M1"}), "0/0 0/1 0/2 OK") << command;
    }
    // It counts as a repeat.
    EXPECT_EQ(Moves({"import", "J@8", "repeat=2"}), "0/0 0/1 OK");
}

TEST_F(MediaCommandsTest, ReportEveryOtherCodeOfASingleSlot) {
    for (const char* command : {"import", "export", "scan"}) {
        for (const int32_t code : {1, 3, 7, 500, 501, 502}) {
            Fake().FailCall("*", Occurrence::Nth(5), {code, "no"});
            EXPECT_EQ(Moves({command, "J@8", "M1", "S1"}),
                      "0/0 service error " + std::to_string(code) + ": no");
            // The script is empty again for the next one; the farm with it.
            Fake().Reset();
            Farm().AddJukebox(8, "Tower").WithMagazine(3).WithMagazine(2);
        }
    }
}

TEST_F(MediaCommandsTest, ReportTheLastEntryHoweverTheOthersEnded) {
    Answer("KrvMediaExport J=8 M=0 S=0", 9);
    EXPECT_EQ(Moves({"export", "J@8", "S1,2"}), "0/0 0/1 OK");
    EXPECT_EQ(Moves({"export", "J@8", "S2,1"}), "0/1 0/0 service error 9: no");
    EXPECT_EQ(Moves({"export", "J@8", "S9,2"}), "0/1 OK");
    EXPECT_EQ(Moves({"export", "J@8", "S2,9"}), "0/1 error 22");
}

// ---- Import ----------------------------------------------------------------------------------

TEST_F(MediaCommandsTest, ImportEndsAtCode501WithSuccess) {
    Answer("KrvMediaImport J=8 M=1 S=0", 501);
    EXPECT_EQ(Moves({"import", "J@8"}), "0/0 0/1 0/2 1/0 OK");
    EXPECT_EQ(Moves({"import", "J@8", "M2"}), "1/0 OK");
    EXPECT_EQ(Moves({"import", "J@8", "M1", "S3", "repeat=3"}), "0/2 1/0 OK");
}

TEST_F(MediaCommandsTest, ImportPassesOverAnOccupiedFirstSlotAndStillMakesAllItsImports) {
    Answer("KrvMediaImport J=8 M=0 S=0", 502);
    EXPECT_EQ(Moves({"import", "J@8", "repeat=3"}), "0/0 0/1 0/2 1/0 OK");
}

TEST_F(MediaCommandsTest, ImportHasNoVolumeForm) {
    // The grammar offers no V to import; the object fails because no jukebox is named.
    const Parameter volume{&test::Node("export.V"), ValueKind::Numbers, {}, {{33, 33, false}}};
    const std::vector<Parameter> options;
    const std::vector<Parameter> parameters = {volume};
    CImport import;
    ASSERT_TRUE(import.Initialize(options, parameters, Writer()).IsOk());
    EXPECT_EQ(test::Text(import.Run()), "error 6");
    EXPECT_EQ(TakeCalls(), Calls{});
}

// ---- Export ----------------------------------------------------------------------------------

TEST_F(MediaCommandsTest, ExportOfAMagazinePassesOverEmptyAndUnusableSlots) {
    Answer("KrvMediaExport J=8 M=0 S=0", 501);
    Answer("KrvMediaExport J=8 M=0 S=2", 502);
    EXPECT_EQ(Moves({"export", "J@8", "M1"}), "0/0 0/1 0/2 OK");
}

TEST_F(MediaCommandsTest, ExportWithRepeatPassesOverASlotWithoutCountingIt) {
    Answer("KrvMediaExport J=8 M=0 S=1", 502);
    EXPECT_EQ(Moves({"export", "J@8", "S1", "repeat=3"}), "0/0 0/1 0/2 1/0 OK");
}

TEST_F(MediaCommandsTest, ExportOfAVolumeEmptiesItsSlot) {
    EXPECT_EQ(StatusAndCalls({"export", "V@33"}),
              (Calls{"OK", "KrvVolumeLocations V=33 room=1", "KrvGetJukebox J=8", "KrvGetMagazine J=8 M=1",
                     "KrvMediaExport J=8 M=1 S=1"}));
}

TEST_F(MediaCommandsTest, ExportOfVolumesReportsTheLastOne) {
    EXPECT_EQ(Moves({"export", "V@99,33"}), "1/1 OK");
    EXPECT_EQ(Moves({"export", "V@33,99"}), "1/1 service error 1001: There is no volume 99.");
}

TEST_F(MediaCommandsTest, ExportOfAVolumeIgnoresTheRepeatCount) {
    EXPECT_EQ(Moves({"export", "V@33", "repeat=3"}), "1/1 OK");
}

TEST_F(MediaCommandsTest, ExportAndScanLeaveAVolumeThatLiesNowhereAlone) {
    for (const char* command : {"export", "scan"}) {
        EXPECT_EQ(StatusAndCalls({command, "V@34"}), (Calls{"OK", "KrvVolumeLocations V=34 room=1"}))
            << command;
    }
}

// ---- Scan ------------------------------------------------------------------------------------

TEST_F(MediaCommandsTest, ScanOfAVolumeScansTheWholeMediumWhateverItsSide) {
    EXPECT_EQ(StatusAndCalls({"scan", "V@33"}).back(), "KrvMediaScan J=8 M=1 S=1 side=2");
}

TEST_F(MediaCommandsTest, ScanPassesOverEmptySlotsOfAMagazine) {
    Answer("KrvMediaScan J=8 M=0 S=1 side=2", 501);
    EXPECT_EQ(Moves({"scan", "J@8", "M1"}), "0/0 0/1 0/2 OK");
}

TEST_F(MediaCommandsTest, ScanAcceptsOnlySidesOfAMedium) {
    CScan scan;
    for (const int32_t side : {-1, 0, 1, 2}) {
        EXPECT_EQ(test::Text(scan.Work({8, 0, 0, side})), "OK") << side;
        EXPECT_EQ(TakeCalls(), (Calls{"KrvMediaScan J=8 M=0 S=0 side=2"})) << side;
    }
    EXPECT_EQ(test::Text(scan.Work({8, 0, 0, 3})), "error 22");
    EXPECT_EQ(TakeCalls(), Calls{});
}

}  // namespace
}  // namespace krvcmd
