#include "tests/wine/console_stream.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace wine {
namespace {

std::string Plain(Source source, std::string_view bytes) {
    ConsoleStream stream(source);
    std::string text = stream.Read(bytes);
    return text + stream.Finish();
}

TEST(ConsoleStream, EndsLinesInOneWay) {
    EXPECT_EQ(Plain(Source::File, "a\r\nb\r\n"), "a\nb\n");
    EXPECT_EQ(Plain(Source::Console, "a\r\nb\r\n"), "a\nb\n");
}

TEST(ConsoleStream, KeepsCarriageReturnsWithinALine) {
    EXPECT_EQ(Plain(Source::File, "a\rb\r\r\n\r"), "a\rb\r\n\r");
}

TEST(ConsoleStream, ReadsTheSameFromPiecesOfAnySize) {
    ConsoleStream stream(Source::Console);
    std::string text;
    for (const char byte : std::string("a\x1b[K\x1b[12Cb\r\nc"))
        text += stream.Read(std::string_view(&byte, 1));
    EXPECT_EQ(text, "a            b\nc");
}

TEST(ConsoleStream, KeepsBlanksAndEscapesOfAFile) {
    EXPECT_EQ(Plain(Source::File, "a  \r\n\x1b[K"), "a  \n\x1b[K");
}

TEST(ConsoleStream, ReadsSkippedColumnsAsBlanks) {
    EXPECT_EQ(Plain(Source::Console, "\x1b[?25l1\x1b[K\x1b[1C2\x1b[?25h"), "1 2");
    EXPECT_EQ(Plain(Source::Console, "1 \x1b[2C 2"), "1    2");
}

TEST(ConsoleStream, DropsBlanksAtTheEndOfARow) {
    EXPECT_EQ(Plain(Source::Console, "a  \r\n\x1b[5C\r\n b \x1b[1C"), "a\n\n b");
}

TEST(ConsoleStream, RefusesWhatMovesTheCursorElsewhere) {
    ConsoleStream stream(Source::Console);
    EXPECT_THROW(stream.Read("\x1b[2;1H"), std::runtime_error);
}

TEST(ConsoleStream, RefusesASequenceThatDoesNotEnd) {
    ConsoleStream stream(Source::Console);
    EXPECT_EQ(stream.Read("a\x1b[2"), "a");
    EXPECT_THROW(stream.Finish(), std::runtime_error);
}

}  // namespace
}  // namespace wine
