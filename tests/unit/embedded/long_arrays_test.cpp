#include <gtest/gtest.h>

#include <algorithm>

#include <string>

#include "embedded/layout/layout_reader.h"
#include "embedded/layout/long_arrays.h"

namespace embedded_test {
namespace {

constexpr int kVolumes = 5'000;

// Three arrays that are long, with all that could be taken for the end of one.
std::string LongLayout(const std::string& lastVolume = "") {
    std::string text = "format = 1\nvolume = [ # of ] tables\n";
    for (int volume = 1; volume <= kVolumes; ++volume) {
        text += "  { id = " + std::to_string(volume) + R"(, label = "a ] \" # [", directories = ['b"] )" +
                std::to_string(volume) + "'] },\n";
    }
    text += lastVolume + "] # end\n[[jukebox]]\nid = 8\nname = \"\"\"x ]\"\"\"\n";
    for (int magazine = 0; magazine < 2; ++magazine) {
        text += "[[jukebox.magazine]]\nslots = 2500\nunknown = [1, 2]\nmedia = [\n";
        for (int slot = 1; slot <= 2500; ++slot) {
            const int volume = magazine * 2500 + slot;
            text += "  { slot = " + std::to_string(slot) +
                    ", type = \"CD-R\", a = " + std::to_string(volume) + " },\n";
        }
        text += "]\n";
    }
    return text;
}

TEST(LongArrays, AreTakenOutOfTheTextLineByLine) {
    const std::string text = LongLayout();
    embedded::LongArrays arrays(text);
    const std::string rest = arrays.GetRest();
    EXPECT_EQ(std::ranges::count(rest, '\n'), std::ranges::count(text, '\n'));
    EXPECT_EQ(rest.find("CD-R"), std::string::npos);
    EXPECT_NE(rest.find("unknown = [1, 2]"), std::string::npos);
    EXPECT_FALSE(arrays.AreAllTaken());
    const auto pieces = arrays.Take(2);
    ASSERT_GT(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].line, 2);
    for (const embedded::LongArrays::Piece& piece : pieces)
        EXPECT_LT(piece.elements.size(), 70'000U);
    EXPECT_TRUE(arrays.Take(3).empty());
}

TEST(LongArrays, FarmIsReadWithTheLineOfEveryItem) {
    const embedded::LayoutResult layout = embedded::ReadLayout(LongLayout());
    ASSERT_TRUE(layout.problems.empty()) << ProblemText("x", layout.problems.front());
    ASSERT_EQ(layout.farm.volumes.size(), size_t{kVolumes});
    for (int number = 0; number < kVolumes; ++number) {
        const embedded::FarmVolume& volume = layout.farm.volumes[static_cast<size_t>(number)];
        ASSERT_EQ(volume.id, number + 1);
        ASSERT_EQ(volume.line, number + 3);
        ASSERT_EQ(volume.label, "a ] \" # [");
        ASSERT_EQ(volume.directories.front(), "b\"] " + std::to_string(number + 1));
    }
    ASSERT_EQ(layout.farm.jukeboxes.size(), 1U);
    ASSERT_EQ(layout.farm.jukeboxes[0].magazines.size(), 2U);
    const embedded::FarmMedium& last = layout.farm.jukeboxes[0].magazines[1].media[2499];
    EXPECT_EQ(last.slot, 2500);
    EXPECT_EQ(last.sides[0].volume, 5000);
    EXPECT_EQ(last.line, kVolumes + 6 + (4 + 2500 + 1) + (4 + 2500));
}

TEST(LongArrays, ProblemsNameTheirPlaceInTheWholeFile) {
    struct Case {
        const char* volume;
        const char* problem;
    };
    for (const Case& expected : {
             Case{"{ id = 5001, colour = 1 },\n", "x:5003: volume[5001].colour: is not a known field"},
             Case{"{ id = \"5001\" },\n", "x:5003: volume[5001].id: must be an integer"},
             Case{"7,\n", "x:5003: volume[5001]: must be a table"},
             Case{"{ id = \xC3\xBC },\n", "x:5003: unexpected non-ASCII character"},
         }) {
        const embedded::LayoutResult layout = embedded::ReadLayout(LongLayout(expected.volume));
        ASSERT_EQ(layout.problems.size(), 1U) << expected.volume;
        EXPECT_EQ(ProblemText("x", layout.problems[0]), expected.problem);
    }
    for (const char* invalid : {",\n", "{ id = },\n", "{ id = 5001 } { id = 5002 },\n", "{ id = 5001,\n"}) {
        EXPECT_FALSE(embedded::ReadLayout(LongLayout(invalid)).problems.empty()) << invalid;
    }
}

}  // namespace
}  // namespace embedded_test
