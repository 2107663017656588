#include "tests/e2e/expect_outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/on_screen.h"
#include "tests/e2e/windows_program.h"

namespace e2e {
namespace {

bool IsError(const std::string& line) {
    return line.starts_with("ERROR ");
}

// The text as it is compared: one line per line, its end visible.
std::string Visible(const std::string& text) {
    std::string result;
    for (const char c : text)
        result += c == '\n' ? std::string("$\n") : std::string(1, c);
    return result;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string result;
    for (const std::string& line : lines)
        result += line + "\n";
    return result;
}

// Under wine a terminal shows the rows of a Windows console instead of the program's own bytes.
std::string AsShown(const std::string& text, const Run& run) {
    const bool isScreen = run.columns > 0 && IsWindowsProgram();
    return isScreen ? AsOnScreen(text, run.columns) : text;
}

}  // namespace

void ExpectCleanCalls(const Outcome& actual) {
    for (const std::string& line : actual.calls)
        EXPECT_FALSE(IsError(line)) << line;
    if (actual.calls.empty()) return;
    const auto count = [&](std::string_view start) {
        return std::count_if(actual.calls.begin(), actual.calls.end(),
                             [&](const std::string& line) { return line.starts_with(start); });
    };
    EXPECT_LE(count("KrvSessionCreate"), 1);
    EXPECT_EQ(count("KrvSessionClose"), 1);
    EXPECT_EQ(actual.calls.back(), "KrvSessionClose");
}

void ExpectOutcome(const Case& expected, const Outcome& actual) {
    EXPECT_FALSE(actual.timedOut);
    EXPECT_EQ(actual.killedBy, expected.killedBy);
    EXPECT_EQ(Visible(actual.standardOutput), Visible(AsShown(expected.standardOutput, expected.run)));
    EXPECT_EQ(Visible(actual.standardError), Visible(expected.standardError));
    EXPECT_EQ(actual.exitStatus, expected.exitStatus);
    if (expected.comparesCalls) {
        EXPECT_EQ(Joined(actual.calls), Joined(expected.calls));
    }
    if (expected.killedBy == 0) ExpectCleanCalls(actual);
}

}  // namespace e2e
