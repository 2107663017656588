#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <sstream>

#include "tools/common/long_task.h"
#include "tools/common/plain_text.h"
#include "tools/common/terminal_text.h"

namespace embedded_test {
namespace {

TEST(ProgressLine, ShowsABarOrACount) {
    EXPECT_EQ(embedded::tools::ProgressLine("slots", 0, 10), "slots [..............................]   0%");
    EXPECT_EQ(embedded::tools::ProgressLine("slots", 5, 10), "slots [###############...............]  50%");
    EXPECT_EQ(embedded::tools::ProgressLine("slots", 10, 10), "slots [##############################] 100%");
    EXPECT_EQ(embedded::tools::ProgressLine("slots", 11, 10), "slots [##############################] 100%");
    EXPECT_EQ(embedded::tools::ProgressLine("items read:", 17, 0), "items read: 17");
}

TEST(TextTable, ColumnsAreAsWideAsTheirWidestCell) {
    embedded::tools::TextTable table({"A", "Long head"});
    table.Add({"wide cell", "x"});
    std::stringstream out;
    table.Write(out);
    EXPECT_EQ(out.str(), "A          Long head\nwide cell  x\n");
}

TEST(TimeText, IsUniversalTime) {
    const std::chrono::system_clock::time_point time =
        std::chrono::sys_days(std::chrono::year(2026) / 3 / 9) + std::chrono::hours(7) +
        std::chrono::seconds(5) + std::chrono::microseconds(42);
    EXPECT_EQ(embedded::tools::TimeText(time), "2026-03-09 07:00:05Z");
    EXPECT_EQ(embedded::tools::PreciseTimeText(time), "2026-03-09T07:00:05.000042Z");
}

TEST(SizeText, RoundsToTheNearestUnit) {
    EXPECT_EQ(embedded::tools::SizeText(1023), "1023 B");
    EXPECT_EQ(embedded::tools::SizeText(1535), "1 KiB");
    EXPECT_EQ(embedded::tools::SizeText(1536), "2 KiB");
    EXPECT_EQ(embedded::tools::SizeText(5 * 1024 * 1024 / 2), "3 MiB");
}

// What reaches a terminal behind the buffer.
std::string OnTerminal(const std::function<void(std::ostream&)>& write) {
    std::stringbuf terminal;
    embedded::tools::TerminalText text(terminal);
    std::ostream out(&text);
    write(out);
    out.flush();
    return terminal.str();
}

TEST(TerminalText, ControlCharactersBecomeQuestionMarksAndLinesStay) {
    EXPECT_EQ(OnTerminal([](std::ostream& out) { out << "not read: \x1B[2Jx\a\ty\rz\x7F\n\nnext\n"; }),
              "not read: ?[2Jx??y?z?\n\nnext\n");
    EXPECT_EQ(OnTerminal([](std::ostream& out) { out << "no end"; }), "no end");
}

TEST(TerminalText, ProgressGoesBackToTheStartOfItsLine) {
    EXPECT_EQ(OnTerminal([](std::ostream& out) {
                  out << '\r' << "writing 1" << std::flush << '\r' << "         " << std::flush << '\r';
              }),
              "\rwriting 1\r         \r");
}

}  // namespace
}  // namespace embedded_test
