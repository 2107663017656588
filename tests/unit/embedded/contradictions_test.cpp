#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"

namespace embedded_test {
namespace {

std::vector<std::string> ContradictionsIn(const std::string& text) {
    const embedded::LayoutResult layout = embedded::ReadLayout("format = 1\n" + text);
    for (const embedded::Problem& problem : layout.problems)
        ADD_FAILURE() << ProblemText("farm.toml", problem);
    std::vector<std::string> found;
    for (const embedded::Problem& problem : embedded::FindContradictions(layout.farm)) {
        found.push_back(std::to_string(problem.line) + ": " + problem.text);
    }
    return found;
}

struct ContradictionCase {
    const char* layout;    // from line 2 on
    const char* expected;  // empty: none
};

TEST(Contradictions, EachIsFoundAndNothingElse) {
    const std::vector<ContradictionCase> cases = {
        {"volume = [ { id = 1 } ]", ""},
        {"volume = [ { id = 0 } ]", "2: volume 0: 0 is not a volume ID"},
        {"volume = [ { id = 1 }, { id = 1 } ]", "2: volume 1 is defined twice"},
        {"volume = [ { id = 1, total = 5, free = 6 } ]", "2: volume 1 has more free than total bytes"},
        {"next_volume = 9\nvolume = [ { id = 9 } ]", "3: volume 9 is not below next_volume (9)"},
        {R"(volume = [ { id = 1, directories = [""] } ])", "2: volume 1 has an empty directory name"},
        {R"(volume = [ { id = 1, directories = ["d"] },
 { id = 2, directories = ["d"] } ])",
         R"(3: volume 2 has the directory name "d", which is used twice)"},
        {"volume = [ { id = -1 } ]", "2: volume -1 is on no medium and was never imported"},
        {R"(volume = [ { id = -1, directories = ["d"] } ]
shelf = [ { type = "CD-R", a = -1 } ])",
         "2: volume -1 has a directory name but was never imported"},
        {R"(shelf = [ { type = "CD-R", a = 4 } ])", "2: volume 4 on the shelf is not defined"},
        {R"(volume = [ { id = 4 } ]
shelf = [ { type = "CD-R", a = { volume = 4, content = "blank" } } ])",
         "3: volume 4 on the shelf is on a side without a file system"},
        {R"(volume = [ { id = 4 } ]
shelf = [ { type = "CD-R", a = 4 }, { type = "CD-R", a = 4 } ])",
         "2: volume 4 is a disc but is on 2 sides"},
        {R"(volume = [ { id = 4, type = "mirror" } ]
shelf = [ { type = "CD-R", a = 4 }, { type = "CD-R", a = 4 } ])",
         ""},
        {R"(volume = [ { id = 4, type = "mirror" } ]
shelf = [ { type = "CD-R", a = { volume = 4, part = 2 } }, { type = "CD-R", a = { volume = 4, part = 2 } } ])",
         "2: volume 4 has several sides with the part number 2"},
        {R"(volume = [ { id = 4, type = "mirror" } ]
shelf = [ { type = "CD-R", a = { volume = 4, part = 2 } }, { type = "CD-R", a = { volume = 4, part = 1 } } ])",
         ""},
        {R"(jukebox = [ { id = 1, name = "x", magazine = [ { slots = 8000000 }, { slots = 8000000 } ] } ])",
         ""},
        {R"(jukebox = [ { id = 1, name = "x", magazine = [ { slots = 8000000 }, { slots = 8000001 } ] } ])",
         "0: the farm has 16000001 slots; the limit is 16000000"},
        {R"(jukebox = [ { id = 1, name = "" } ])", "2: jukebox 1 has an empty name"},
        {R"(jukebox = [ { id = 1, name = "x" }, { id = 1, name = "y" } ])", "2: jukebox 1 is defined twice"},
        {R"(jukebox = [ { id = 1, name = "x", magazine = [ { slots = 2, media = [ { slot = 3, type = "CD-R", a = "blank" } ] } ] } ])",
         "2: slot 3 of magazine 1 of jukebox 1 does not exist"},
        {R"(jukebox = [ { id = 1, name = "x", magazine = [ { slots = 2, unknown = [3] } ] } ])",
         "2: slot 3 of magazine 1 of jukebox 1 does not exist"},
        {R"(jukebox = [ { id = 1, name = "x", magazine = [ { slots = 2, unknown = [1], scan_failed = [1] } ] } ])",
         "2: slot 1 of magazine 1 of jukebox 1 is listed with two states"},
        {R"(jukebox = [ { id = 1, name = "x", magazine = [ { slots = 2, media = [ { slot = 1, type = "CD-R", a = "blank" }, { slot = 1, type = "CD-R", a = "blank" } ] } ] } ])",
         "2: slot 1 of magazine 1 of jukebox 1 holds two media"},
        {R"(jukebox = [ { id = 1, name = "x", magazine = [ { slots = 2, not_present = [1], media = [ { slot = 1, type = "CD-R", a = "blank" } ] } ] } ])",
         "2: slot 1 of magazine 1 of jukebox 1 is not present but holds a medium"},
        {R"(volume = [ { id = -1 } ]
jukebox = [ { id = 1, name = "x", exported = [ { type = "CD-R", a = -1 } ] } ])",
         "3: volume -1 in the export station of jukebox 1 was imported, so its ID must be above 0"},
        {R"(volume = [ { id = -1 } ]
jukebox = [ { id = 1, name = "x", waiting = [ { type = "CD-R", a = -1 } ] } ])",
         ""},
    };
    for (const ContradictionCase& expected : cases) {
        const std::vector<std::string> found = ContradictionsIn(expected.layout);
        if (*expected.expected == '\0') {
            EXPECT_TRUE(found.empty()) << expected.layout << "\n" << (found.empty() ? "" : found[0]);
        } else {
            EXPECT_EQ(found, std::vector<std::string>{expected.expected}) << expected.layout;
        }
    }
}

TEST(Contradictions, AllOfThemAreListed) {
    EXPECT_EQ(ContradictionsIn(R"(volume = [ { id = 1 }, { id = 1, total = 1, free = 2 } ]
shelf = [ { type = "CD-R", a = 3 } ])")
                  .size(),
              3U);
}

TEST(Contradictions, VolumeOnTooManySidesIsFound) {
    embedded::Farm farm;
    embedded::FarmVolume volume;
    volume.id = 4;
    volume.type = embedded::VolumeType::VolumeSet;
    farm.volumes.push_back(volume);
    embedded::FarmMedium medium;
    medium.sides.resize(1);
    medium.sides[0].content = embedded::Content::FileSystem;
    medium.sides[0].volume = 4;
    farm.shelf.assign(100'000, medium);
    EXPECT_TRUE(embedded::FindContradictions(farm).empty());
    farm.shelf.push_back(medium);
    const std::vector<embedded::Problem> problems = embedded::FindContradictions(farm);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].text, "volume 4 is on 100001 sides; the limit is 100000");
}

}  // namespace
}  // namespace embedded_test
