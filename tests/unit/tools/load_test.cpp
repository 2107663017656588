#include <gtest/gtest.h>

#include "tests/unit/embedded/support/client.h"
#include "tests/unit/tools/tool_fixture.h"

namespace embedded_test {
namespace {

// Nothing waits at My Box; its magazine has gaps at slots 3, 6, 7 and 8.
constexpr Slot kGap{14, 0, 2};
constexpr Slot kSecondGap{14, 0, 5};

class KrvsimLoad : public ToolFixture {};

TEST_F(KrvsimLoad, BlankMediaOfATypeWaitForImport) {
    EXPECT_EQ(Done({"load", "-J", "My Box", "--type", "BD-RE", "--count", "2"}),
              "Loaded 2 media; 2 wait for import.\n");
    Client client;
    ASSERT_TRUE(client.Import(kGap).ok);
    SlotRecord slot{};
    ASSERT_TRUE(client.GetSlot(kGap, slot).ok);
    EXPECT_EQ(slot.mediumCode, 26U);
    EXPECT_EQ(client.SideOf(kGap, 0).state, 4U);
    EXPECT_EQ(client.SideOf(kGap, 1).state, 1U);
    Done({"check"});
}

TEST_F(KrvsimLoad, LabelledMediaHoldVolumesThatAppearAtTheirImport) {
    EXPECT_EQ(Done({"load", "-J", "@14", "--type", "DVD-RAM", "--label", "Fresh", "--count", "2",
                    "--double-sided"}),
              "Loaded 2 media; 2 wait for import.\n");
    Client client;
    EXPECT_EQ(client.Volumes().size(), 50U) << "nobody has seen them yet";
    ASSERT_TRUE(client.Import(kGap).ok);
    ASSERT_TRUE(client.Import(kSecondGap).ok);
    EXPECT_EQ(client.LabelOf(600), "Fresh 1 A");
    EXPECT_EQ(client.LabelOf(601), "Fresh 1 B");
    EXPECT_EQ(client.LabelOf(602), "Fresh 2 A");
    EXPECT_EQ(client.SideOf(kSecondGap, 1).volumeId, 603);
    Done({"check"});
}

TEST_F(KrvsimLoad, ExportedMediaComeBack) {
    Client client;
    ASSERT_TRUE(client.Export({14, 0, 0}).ok);
    ASSERT_TRUE(client.Export({14, 0, 1}).ok);
    EXPECT_EQ(Done({"load", "-J", "My Box", "--from-export", "@14"}), "Loaded 2 media; 2 wait for import.\n");
    ASSERT_TRUE(client.Import(kGap).ok);
    EXPECT_EQ(client.SideOf(kGap, 0).volumeId, 231) << "the one that was exported first";
    EXPECT_EQ(client.VolumeOf(231).state, 0U);
    EXPECT_EQ(client.VolumeOf(232).state, 2U);
    Done({"check"});
}

TEST_F(KrvsimLoad, OneVolumeComesBackFromAnExportStationOrTheShelf) {
    Client client;
    ASSERT_TRUE(client.Export({8, 0, 2}).ok);
    EXPECT_EQ(Done({"load", "-J", "My Box", "--volume", "34"}), "Loaded 1 medium; 1 waits for import.\n");
    EXPECT_EQ(Done({"load", "-J", "My Box", "--volume", "401"}), "Loaded 1 medium; 2 wait for import.\n");
    ASSERT_TRUE(client.Import(kGap).ok);
    ASSERT_TRUE(client.Import(kSecondGap).ok);
    EXPECT_EQ(client.SideOf(kGap, 0).volumeId, 33);
    EXPECT_EQ(client.VolumeOf(401).state, 0U);
}

TEST_F(KrvsimLoad, ImpossibleLoadFailsAndChangesNothing) {
    const std::string before = Done({"dump"});
    EXPECT_EQ(Failed({"load", "-J", "@9", "--type", "CD-R"}), "krvsim: there is no jukebox @9\n");
    EXPECT_EQ(Failed({"load", "-J", "mybox", "--type", "CD-R"}), "krvsim: there is no jukebox mybox\n");
    EXPECT_EQ(Failed({"load", "-J", "@8", "--volume", "33"}),
              "krvsim: volume 33 is in a slot; export its medium first\n");
    EXPECT_EQ(Failed({"load", "-J", "@8", "--volume", "402"}),
              "krvsim: volume 402 is already in an import station\n");
    EXPECT_EQ(Failed({"load", "-J", "@8", "--volume", "4"}), "krvsim: volume 4 is on no medium\n");
    const std::string types = Failed({"load", "-J", "@8", "--type", "DVD"});
    EXPECT_TRUE(types.starts_with("krvsim: unknown media type \"DVD\"; the types are:\nkrvsim:   CD-ROM\n"))
        << types;
    EXPECT_EQ(Done({"dump"}), before);
}

TEST_F(KrvsimLoad, LabelWithItsNumberMustFitItsRecord) {
    const std::string before = Done({"dump"});
    const std::string longest(255, 'x');
    EXPECT_EQ(WrongUsage({"load", "-J", "@8", "--type", "CD-R", "--label", longest + "x"}),
              "krvsim: the label \"" + longest + "x\" is 256 bytes long; the limit is 255\n");
    EXPECT_EQ(WrongUsage({"load", "-J", "@8", "--type", "CD-R", "--label", longest, "--count", "2"}),
              "krvsim: the label \"" + longest + " 2\" is 257 bytes long; the limit is 255\n");
    EXPECT_EQ(WrongUsage({"load", "-J", "@8", "--type", "CD-R", "--label", longest, "--double-sided"}),
              "krvsim: the label \"" + longest + " B\" is 257 bytes long; the limit is 255\n");
    EXPECT_EQ(Done({"dump"}), before);
    Done({"load", "-J", "@8", "--type", "CD-R", "--label", longest});
    Done({"check"});
}

TEST_F(KrvsimLoad, OptionsThatExcludeEachOtherAreExplained) {
    EXPECT_EQ(WrongUsage({"load", "-J", "@8"}), "krvsim: --type, --from-export or --volume is required\n");
    EXPECT_EQ(WrongUsage({"load", "-J", "@8", "--type", "CD-R", "--volume", "401"}),
              "krvsim: --type, --from-export and --volume exclude each other\n");
    EXPECT_EQ(Failed({"load", "-J", "8", "--type", "CD-R"}),
              "krvsim: there is no jukebox 8 (an ID is written @8)\n");
    // IDs below 0 are those of volumes that were never imported.
    EXPECT_EQ(
        WrongUsage({"load", "-J", "@8", "--volume", "-1"}),
        "krvsim: --volume: \"-1\" is not a number from 1 to 2147483647\nRun with --help for more information.\n");
}

class KrvsimUnload : public ToolFixture {};

TEST_F(KrvsimUnload, MovesExportedMediaToTheShelf) {
    Client client;
    ASSERT_TRUE(client.Export({8, 0, 2}).ok);
    EXPECT_EQ(Done({"unload", "-J", "MyBox"}), "Moved 1 medium to the shelf.\n");
    EXPECT_EQ(Done({"unload"}), "Moved 1 medium to the shelf.\n")
        << "one was in Sales Tower's from the start";
    EXPECT_EQ(Done({"unload"}), "Moved 0 media to the shelf.\n");
    EXPECT_EQ(client.VolumeOf(33).state, 2U);
    EXPECT_EQ(client.LabelOf(33), "Sales 2004");
    EXPECT_EQ(Done({"load", "-J", "MyBox", "--from-export", "MyBox"}),
              "Loaded 0 media; 0 wait for import.\n");
    Done({"check"});
}

}  // namespace
}  // namespace embedded_test
