#include "tests/reliability/support/comparison.h"

#include <algorithm>
#include <string_view>

#include "tests/reliability/support/general_rules.h"
#include "tests/reliability/support/model.h"

namespace krvcmd::reliability {
namespace {

std::string DifferentCalls(const std::vector<std::string>& made, const std::vector<std::string>& expected) {
    if (made == expected) return {};
    const auto [first, second] = std::mismatch(made.begin(), made.end(), expected.begin(), expected.end());
    const auto text = [](auto at, auto end) { return at == end ? std::string("no call") : *at; };
    return "call " + std::to_string(first - made.begin() + 1) + " is " + text(first, made.end()) + ", not " +
           text(second, expected.end());
}

void ReplaceAll(std::string& text, std::string_view what, std::string_view by) {
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

// As the console writer shows a text on a line without end.
std::string Shown(std::string text) {
    ReplaceAll(text, "[CmdLine]", "krvcmd");
    ReplaceAll(text, "[ProductName]", "Carvoline");
    ReplaceAll(text, "%%", "%");
    return text;
}

// Rows of unformatted output; -1 where the output cannot be counted.
ptrdiff_t CountRows(const Order& order, const ProgramRun& run) {
    if (order.verb != Verb::Query || !order.notable || order.columns.value_or("?").empty()) return -1;
    return std::count(run.output.begin(), run.output.end(), '\n');
}

std::string Difference(const Order& order, const ProgramRun& run, const Expected& expected,
                       const std::vector<std::string>& expectedCalls) {
    if (std::string broken = BrokenRules(run); !broken.empty()) return broken;
    if (std::string calls = DifferentCalls(run.calls, expectedCalls); !calls.empty()) return calls;
    const std::string line = Shown(expected.result.ResultLine(expected.quiet));
    if (run.errorOutput != line) return "it says: " + run.errorOutput + " instead of: " + line;
    if (run.exitStatus != expected.result.ExitStatus())
        return "exit status " + std::to_string(run.exitStatus);
    if (!expected.quiet && run.output.empty()) return "no banner";
    const ptrdiff_t rows = expected.endsBeforeTheSession ? -1 : CountRows(order, run);
    if (rows >= 0 && rows != static_cast<ptrdiff_t>(expected.rows)) {
        return std::to_string(rows) + " rows instead of " + std::to_string(expected.rows);
    }
    return {};
}

}  // namespace

std::string DifferenceFromModel(ProgramRunner& program, const Order& order,
                                const std::vector<std::string>& words, const Script& script) {
    krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
    library.Reset();
    script(library);
    const ProgramRun run = program.Run(words);

    library.Reset();
    script(library);
    const Expected expected = CarryOut(order);
    return Difference(order, run, expected, library.Calls());
}

}  // namespace krvcmd::reliability
