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

// Windows ends a program at Ctrl-C with the status 0xC000013A, of which the last byte arrives here.
constexpr int kEndedByControlC = 0x3A;

void ExpectEnd(const Case& expected, const Outcome& actual) {
    const bool isEndedByControlC = expected.killedBy != 0 && IsWindowsProgram();
    EXPECT_FALSE(actual.timedOut);
    EXPECT_EQ(actual.killedBy, isEndedByControlC ? 0 : expected.killedBy);
    EXPECT_EQ(actual.exitStatus, isEndedByControlC ? kEndedByControlC : expected.exitStatus);
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
    ExpectEnd(expected, actual);
    EXPECT_EQ(Visible(actual.standardOutput), Visible(AsShown(expected.standardOutput, expected.run)));
    EXPECT_EQ(Visible(actual.standardError), Visible(expected.standardError));
    if (expected.comparesCalls) {
        EXPECT_EQ(Joined(actual.calls), Joined(expected.calls));
    }
    if (expected.killedBy == 0) ExpectCleanCalls(actual);
}

}  // namespace e2e
