#include "tests/reliability/memory/verdict.h"

#include <algorithm>

#include "tests/reliability/memory/missing_cells.h"
#include "tests/reliability/support/general_rules.h"

namespace krvcmd::reliability {
namespace {

// A run that could do without the memory leaves nothing out but a cell.
std::string WhatElseDiffers(const std::vector<std::string>& words, const ProgramRun& run,
                            const ProgramRun& whole) {
    if (run.exitStatus != whole.exitStatus) return "exit status " + std::to_string(run.exitStatus);
    if (run.errorOutput != whole.errorOutput) return "it says: " + run.errorOutput;
    if (run.calls != whole.calls) return "other calls than with all memory";
    if (run.output == whole.output || LacksOneCell(run.output, whole.output)) return {};
    const bool isNarrow = std::any_of(words.begin(), words.end(),
                                      [](const std::string& word) { return word.starts_with("width="); });
    if (isNarrow && HasAsManyLines(run.output, whole.output)) return {};
    return "it shows:\n" + run.output + "instead of:\n" + whole.output;
}

bool MakesFirstCallsOf(const ProgramRun& whole, const ProgramRun& run) {
    if (run.calls.empty()) return true;
    const auto before = run.calls.end() - 1;
    return run.calls.size() <= whole.calls.size() &&
           std::equal(run.calls.begin(), before, whole.calls.begin());
}

}  // namespace

std::string WhatIsWrong(const std::vector<std::string>& words, const ProgramRun& run,
                        const ProgramRun& whole) {
    if (std::string broken = BrokenRules(run); !broken.empty()) return broken;
    if (run.exitStatus != 12) return WhatElseDiffers(words, run, whole);
    if (run.errorOutput != "OS error 12: Cannot allocate memory\n") return "it says: " + run.errorOutput;
    return MakesFirstCallsOf(whole, run) ? "" : "other calls than with all memory";
}

}  // namespace krvcmd::reliability
