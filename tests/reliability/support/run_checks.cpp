#include "tests/reliability/support/run_checks.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tests/reliability/support/model.h"

namespace krvcmd::reliability {
namespace {

constexpr std::string_view kBanner = "Carvoline - command line interface\n";

bool IsCallOf(const std::string& line, std::string_view function) {
    return line == function || (line.starts_with(function) && line[function.size()] == ' ');
}

std::string BrokenCallRules(const std::vector<std::string>& calls) {
    for (const std::string& line : calls) {
        if (line.starts_with("ERROR")) return "the library complains: " + line;
    }
    if (calls.empty()) return {};
    const auto closes = std::count_if(calls.begin(), calls.end(), [](const std::string& line) {
        return IsCallOf(line, "KrvSessionClose");
    });
    if (closes != 1) return "the session is closed " + std::to_string(closes) + " times";
    if (!IsCallOf(calls.back(), "KrvSessionClose")) return "the last call is " + calls.back();
    const bool opensFirst = IsCallOf(calls.front(), "KrvSessionCreate");
    const bool startsService = calls.size() == 2 && IsCallOf(calls.front(), "KrvServiceStart");
    const bool interruptedAtOnce = calls.size() == 1;
    if (!opensFirst && !startsService && !interruptedAtOnce) return "the first call is " + calls.front();
    return {};
}

// The code in an error's result line, or -1 when the line is none.
int64_t CodeOf(std::string_view line) {
    constexpr std::string_view kSystem = "OS error ";
    constexpr std::string_view kService = "KRV error ";
    if (line == "Error: No such item present.\n") return 2;
    if (line == "Error: Invalid command line parameter. Specify help to get further information.\n")
        return 22;
    for (const std::string_view start : {kSystem, kService}) {
        if (!line.starts_with(start)) continue;
        const std::string number(line.substr(start.size(), line.find(": ") - start.size()));
        char* end = nullptr;
        const int64_t code = std::strtoll(number.c_str(), &end, 10);
        return number.empty() || *end != '\0' ? -1 : code;
    }
    return -1;
}

std::string BrokenResultRules(const ProgramRun& run) {
    const std::string& line = run.errorOutput;
    if (line.empty() || line == "Operation completed successfully.\n") {
        return run.exitStatus == 0 ? "" : "success with the exit status " + std::to_string(run.exitStatus);
    }
    if (std::count(line.begin(), line.end(), '\n') != 1 || line.back() != '\n') {
        return "not one result line: " + line;
    }
    const int64_t code = CodeOf(line);
    if (code < 0) return "no result line: " + line;
    const int64_t expected = code != 0 && code % 256 == 0 ? 255 : code % 256;
    if (run.exitStatus == expected) return {};
    return "exit status " + std::to_string(run.exitStatus) + " after " + line;
}

std::string BrokenBannerRules(const ProgramRun& run) {
    const size_t banner = run.output.find(kBanner);
    if (banner == std::string::npos) return {};
    if (banner != 0) return "the banner is not printed first";
    const bool repeated = run.output.find(kBanner, 1) != std::string::npos;
    return repeated ? "the banner is printed twice" : "";
}

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

// The text as the console writer shows it on an unlimited line.
std::string Shown(std::string text) {
    ReplaceAll(text, "[CmdLine]", "krvcmd");
    ReplaceAll(text, "[ProductName]", "Carvoline");
    ReplaceAll(text, "%%", "%");
    return text;
}

// The rows of unformatted output; -1 when they cannot be counted.
ptrdiff_t CountRows(const CommandSpec& command, const ProgramRun& run) {
    if (command.verb != Verb::Query || !command.notable || command.columns.value_or("?").empty()) return -1;
    return std::count(run.output.begin(), run.output.end(), '\n');
}

std::string Difference(const CommandSpec& command, const ProgramRun& run, const Expected& expected,
                       const std::vector<std::string>& expectedCalls) {
    if (std::string broken = BrokenRule(run); !broken.empty()) return broken;
    if (std::string calls = DifferentCalls(run.calls, expectedCalls); !calls.empty()) return calls;
    const std::string line = Shown(expected.result.ResultLine(expected.quiet));
    if (run.errorOutput != line) return "it says: " + run.errorOutput + " instead of: " + line;
    if (run.exitStatus != expected.result.ExitStatus())
        return "exit status " + std::to_string(run.exitStatus);
    if (!expected.quiet && run.output.empty()) return "no banner";
    const ptrdiff_t rows = expected.endsBeforeTheSession ? -1 : CountRows(command, run);
    if (rows >= 0 && rows != static_cast<ptrdiff_t>(expected.rows)) {
        return std::to_string(rows) + " rows instead of " + std::to_string(expected.rows);
    }
    return {};
}

}  // namespace

std::string BrokenRule(const ProgramRun& run) {
    for (const std::string& broken :
         {BrokenCallRules(run.calls), BrokenResultRules(run), BrokenBannerRules(run)}) {
        if (!broken.empty()) return broken;
    }
    return {};
}

std::string DifferenceFromModel(ProgramRunner& program, const CommandSpec& command,
                                const std::vector<std::string>& words, const Script& script) {
    krvfake::FakeLibrary& library = krvfake::FakeLibrary::Instance();
    library.Reset();
    script(library);
    const ProgramRun run = program.Run(words);

    library.Reset();
    script(library);
    const Expected expected = CarryOut(command);
    return Difference(command, run, expected, library.Calls());
}

}  // namespace krvcmd::reliability
