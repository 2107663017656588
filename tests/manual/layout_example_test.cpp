#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"

namespace embedded {
namespace {

std::string ExampleText() {
    std::ifstream file(KRVCMD_LAYOUT_EXAMPLE, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string Problems(const std::vector<Problem>& problems) {
    std::string text;
    for (const Problem& problem : problems)
        text += ProblemText("example", problem) + "\n";
    return text;
}

TEST(LayoutExample, CanBeReadAndDoesNotContradictItself) {
    const LayoutResult layout = ReadLayout(ExampleText());
    ASSERT_EQ(Problems(layout.problems), "");
    EXPECT_EQ(Problems(FindContradictions(layout.farm)), "");
    ASSERT_EQ(layout.farm.jukeboxes.size(), 2U);
    EXPECT_EQ(layout.farm.jukeboxes[0].name, "Tower");
    EXPECT_EQ(layout.farm.jukeboxes[0].drives.size(), 2U);
    EXPECT_EQ(layout.farm.volumes.size(), 4U);
    EXPECT_EQ(layout.farm.shelf.size(), 1U);
}

}  // namespace
}  // namespace embedded
