#include <algorithm>

#include "embedded/layout/contradictions.h"
#include "embedded/layout/layout_reader.h"
#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {
namespace {

void CheckProblems(const std::vector<embedded::Problem>& problems, int lineCount) {
    for (const embedded::Problem& problem : problems) {
        Require(problem.line >= 0 && problem.line <= lineCount, "a problem is on one of the lines");
        Require(!problem.text.empty() && !problem.text.ends_with('.'), "a problem is told in words");
        Require(!embedded::ProblemText("farm.toml", problem).empty(), "a problem can be printed");
    }
}

}  // namespace

}  // namespace krvcmd::fuzz

// Reads a layout file and looks for contradictions in it.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = krvcmd::fuzz::TextOf(data, size);
    const int lineCount = 1 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    const embedded::LayoutResult result = embedded::ReadLayout(text);
    krvcmd::fuzz::CheckProblems(result.problems, lineCount);
    if (!result.problems.empty()) return 0;
    krvcmd::fuzz::CheckProblems(embedded::FindContradictions(result.farm), lineCount);
    return 0;
}
