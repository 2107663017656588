#include "tests/fake_library/script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/fake_library/script_line.h"

namespace krvfake {
namespace {

using testing::ElementsAre;

TEST(ScriptLine, TakesWordsAndPairsApart) {
    const ScriptLine line(R"(  volume 33 label="My \"Box\"\x01\\" dir=a\b dir="c d" # not read)");
    EXPECT_THAT(line.Words(), ElementsAre("volume", "33"));
    EXPECT_EQ(line.Text("label"), "My \"Box\"\x01\\");
    EXPECT_THAT(line.Texts("dir"), ElementsAre("a\\b", "c d"));
    EXPECT_EQ(line.Number("free", 12), 12);
    EXPECT_TRUE(ScriptLine("   # nothing").IsEmpty());
}

TEST(ScriptLine, QuotedWordsMayHoldEqualSigns) {
    EXPECT_THAT(ScriptLine(R"(fail "KrvGetJukebox J=8" code=1)").Words(),
                ElementsAre("fail", "KrvGetJukebox J=8"));
}

TEST(Script, BuildsTheFarmThatItDescribes) {
    FakeLibrary library;
    RunScript(library,
              "jukebox 8 name=Tower vendor=OSTREL product=J-200 revision=3404 scsi=0/4/1 doublesided=1\n"
              "drive product=Drive enabled=0 claimed=-3\n"
              "magazine slots=2 state=2 medium=9\r\n"
              "magazine slots=5 present=0 claimed=77\n"
              "slot M=0 S=1 state=1\n"
              "side M=1 S=0 side=1 state=3 V=-1\n"
              "volume 33 label=Sales type=2 state=1 total=1000 free=10 dir=x at=8/1/4/1 says=9/0/0/0\n");
    Jukebox* const jukebox = library.GetFarm().FindJukebox(8);
    ASSERT_NE(jukebox, nullptr);
    EXPECT_EQ(jukebox->changer.vendor, "OSTREL");
    EXPECT_THAT(jukebox->changer.scsi, ElementsAre(0, 4, 1));
    EXPECT_TRUE(jukebox->doubleSided);
    EXPECT_EQ(jukebox->claimedDrives, -3);
    EXPECT_EQ(jukebox->claimedMagazines, 77);
    EXPECT_EQ(jukebox->claimedSlots, 7);
    EXPECT_FALSE(jukebox->drives.at(0).enabled);
    EXPECT_EQ(jukebox->magazines.at(0).otherSlots.state, 2U);
    EXPECT_EQ(jukebox->magazines.at(0).slots.at(1).state, 1U);
    EXPECT_FALSE(jukebox->magazines.at(1).present);
    EXPECT_EQ(jukebox->magazines.at(1).slots.at(0).sides[1].volumeId, -1);
    EXPECT_EQ(jukebox->magazines.at(1).slots.at(4).sides[1].volumeId, 33);
    const Volume* const volume = library.GetFarm().FindVolume(33);
    ASSERT_NE(volume, nullptr);
    EXPECT_EQ(volume->type, 2U);
    EXPECT_EQ(volume->freeCapacity, 10U);
    EXPECT_THAT(volume->directories, ElementsAre("x"));
    EXPECT_EQ(volume->locations.size(), 2U);
}

TEST(Script, NamesTheLineThatItDoesNotUnderstand) {
    const auto complaint = [](const char* script) {
        FakeLibrary library;
        try {
            RunScript(library, script);
        } catch (const std::runtime_error& error) {
            return std::string(error.what());
        }
        return std::string("understood");
    };
    EXPECT_EQ(complaint("\njukbox 8\n"), "script line 2: unknown statement jukbox");
    EXPECT_EQ(complaint("jukebox 8 nmae=Tower"), "script line 1: \"nmae\" means nothing here");
    EXPECT_EQ(complaint("jukebox x"), "script line 1: \"x\" is not a number");
    EXPECT_EQ(complaint("magazine slots=1"), "script line 1: no jukebox stands above this line");
    EXPECT_EQ(complaint("jukebox 8 name=\"x"), "script line 1: a quote is not closed");
    EXPECT_EQ(complaint("volume 1 at=8/0/0/0"),
              "script line 1: a volume lies in a jukebox that was not added");
    EXPECT_EQ(complaint("jukebox 8"), "understood");
}

}  // namespace
}  // namespace krvfake
