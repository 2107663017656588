// The page about layout files shows an example that is a faultless layout, and names every type of medium.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"
#include "embedded/model/media_types.h"

namespace embedded_test {
namespace {

std::string ReadLayoutPage() {
    std::stringstream text;
    text << std::ifstream(KRVSIM_LAYOUT_PAGE, std::ios::binary).rdbuf();
    return text.str();
}

std::string ExampleOf(const std::string& page) {
    const std::string fence = "```toml\n";
    const size_t start = page.find(fence);
    if (start == std::string::npos) return {};
    const size_t first = start + fence.size();
    return page.substr(first, page.find("```", first) - first);
}

TEST(LayoutDocument, ExampleIsAFaultlessLayout) {
    const std::string example = ExampleOf(ReadLayoutPage());
    ASSERT_FALSE(example.empty());
    const embedded::LayoutResult layout = embedded::ReadLayout(example);
    for (const embedded::Problem& problem : layout.problems)
        ADD_FAILURE() << ProblemText("example", problem);
    for (const embedded::Problem& problem : embedded::FindContradictions(layout.farm)) {
        ADD_FAILURE() << ProblemText("example", problem);
    }
    EXPECT_EQ(layout.farm.volumes.size(), 5U);
    ASSERT_EQ(layout.farm.jukeboxes.size(), 1U);
    EXPECT_EQ(layout.farm.jukeboxes[0].magazines.size(), 2U);
}

TEST(LayoutDocument, EveryMediaTypeIsNamed) {
    const std::string page = ReadLayoutPage();
    for (const embedded::MediaType& type : embedded::AllMediaTypes()) {
        EXPECT_NE(page.find("`" + std::string(type.name) + "`"), std::string::npos) << type.name;
    }
}

}  // namespace
}  // namespace embedded_test
