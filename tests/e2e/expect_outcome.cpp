#include "tests/e2e/expect_outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace e2e {
namespace {

// The text with visible ends of its lines, for messages.
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

constexpr size_t kTabStop = 8;

class Screen {
  public:
    explicit Screen(size_t columns) : m_columns(columns) {}

    void Put(char byte) {
        if (m_row.size() == m_columns) EndRow();
        m_row += byte;
    }

    void Tab() {
        do {
            Put(' ');
        } while (m_row.size() % kTabStop != 0 && m_row.size() < m_columns);
    }

    void EndRow() {
        m_rows += WithoutBlanksAtTheEnd() + "\n";
        m_row.clear();
    }

    std::string Rows() const { return m_rows + WithoutBlanksAtTheEnd(); }

  private:
    std::string WithoutBlanksAtTheEnd() const { return m_row.substr(0, m_row.find_last_not_of(' ') + 1); }

    size_t m_columns;
    std::string m_rows;
    std::string m_row;
};

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

bool IsWindowsProgram() {
    return std::getenv("KRVCMD_E2E_WINDOWS") != nullptr;
}

std::string AsOnScreen(std::string_view text, int columns) {
    Screen screen(static_cast<size_t>(columns));
    for (const char byte : text) {
        if (byte == '\n') {
            screen.EndRow();
        } else if (byte == '\t') {
            screen.Tab();
        } else {
            screen.Put(byte);
        }
    }
    return screen.Rows();
}

void ExpectCleanCalls(const Outcome& actual) {
    for (const std::string& line : actual.calls)
        EXPECT_FALSE(line.starts_with("ERROR ")) << line;
    if (actual.calls.empty()) return;
    const auto count = [&](std::string_view call) {
        return std::ranges::count_if(actual.calls,
                                     [&](const std::string& line) { return line.starts_with(call); });
    };
    EXPECT_LE(count("KrvSessionCreate"), 1);
    EXPECT_TRUE(count("KrvSessionCreate") == 0 || actual.calls.front().starts_with("KrvSessionCreate"));
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
