#include "tests/e2e/case_file.h"
#include "tests/e2e/shell_words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace e2e {
namespace {

using testing::ElementsAre;
using testing::Field;

constexpr const char* kDefaultOutput =
    "Carvoline - command line interface\n"
    "Copyright (c) Ostrel 2003-2026\n"
    "\n";

std::vector<Case> Read(const std::string& text) {
    return ReadCases(text, {{"poem", "Roses are red.\n"}});
}

// The only case, with `lines` between its words and its result.
Case ReadOne(const std::string& lines, const std::string& result = "result: success\n") {
    return Read("case one\nwords: x\n" + lines + result).at(0);
}

TEST(CaseFile, ReadsEverySetting) {
    const auto cases = Read(
        "# a comment\n"
        "farm one\n"
        "    jukebox 8\n"
        "farm two\n"
        "    jukebox 9\n"
        "\n"
        "case does something\n"
        "words: query \"a b\"\n"
        "words: q\n"
        "farm: one + two\n"
        "columns: 80\n"
        "locale: C.UTF-8\n"
        "merged: yes\n"
        "input: closed\n"
        "interrupt: after 6 calls\n"
        "terminate: after 7 calls\n"
        "hang up: after 8 calls and 1200 ms\n"
        "not on windows: it cannot\n"
        "script\n"
        "    fail KrvServiceStop\n"
        "script: record off\n"
        "stdout\n"
        "    {banner}\n"
        "    blank at the end $\n"
        "    $\n"
        "    a dollar$$\n"
        "    \\ttab\n"
        "stderr\n"
        "    oops\n"
        "exit: 245\n"
        "calls\n"
        "    KrvSessionClose\n");
    ASSERT_EQ(cases.size(), 1U);
    const Case& only = cases.front();
    EXPECT_EQ(only.name, "does something");
    EXPECT_EQ(only.line, 7);
    EXPECT_THAT(only.commandLines,
                ElementsAre(Field(&CommandLine::text, "query \"a b\""), Field(&CommandLine::text, "q")));
    EXPECT_THAT(only.commandLines[0].words, ElementsAre("query", "a b"));
    EXPECT_EQ(only.run.script, "jukebox 8\njukebox 9\nfail KrvServiceStop\nrecord off\n");
    EXPECT_EQ(only.run.columns, 80);
    EXPECT_EQ(only.run.locale, "C.UTF-8");
    EXPECT_TRUE(only.run.merged);
    EXPECT_TRUE(only.run.isInputClosed);
    ASSERT_EQ(only.run.signals.size(), 3U);
    EXPECT_EQ(only.run.signals[0].afterCalls, 6U);
    EXPECT_EQ(only.run.signals[0].interruption, Interruption::Interrupt);
    EXPECT_EQ(only.run.signals[1].interruption, Interruption::Terminate);
    EXPECT_EQ(only.run.signals[2].interruption, Interruption::HangUp);
    EXPECT_EQ(only.run.signals[2].afterCalls, 8U);
    EXPECT_EQ(only.run.signals[2].pauseMilliseconds, 1200);
    EXPECT_EQ(only.notOnWindows, "it cannot");
    EXPECT_EQ(only.standardOutput, std::string(kDefaultOutput) + "blank at the end \n\na dollar$\n\ttab\n");
    EXPECT_EQ(only.standardError, "oops\n");
    EXPECT_EQ(only.exitStatus, 245);
    EXPECT_TRUE(only.comparesCalls);
    EXPECT_THAT(only.calls, ElementsAre("KrvSessionClose"));
}

TEST(CaseFile, ExpectsTheBannerWhereNoOutputIsGivenAndNothingWhenQuiet) {
    EXPECT_EQ(ReadOne("").standardOutput, kDefaultOutput);
    EXPECT_EQ(ReadOne("", "result: quiet\n").standardOutput, "");
    EXPECT_EQ(ReadOne("stdout: nothing\n").standardOutput, "");
    EXPECT_EQ(ReadOne("output: full disk\n").standardOutput, "");
    EXPECT_EQ(ReadOne("output: full disk\n").run.output, OutputTo::FullDisk);
}

TEST(CaseFile, ExpectsAWholeGoldenText) {
    EXPECT_EQ(ReadOne("golden: poem\n").standardOutput, "Roses are red.\n");
}

TEST(CaseFile, KnowsResultLinesAndTheirExitStatuses) {
    const Case invalid = ReadOne("calls: none\n", "result: invalid\n");
    EXPECT_EQ(invalid.standardError,
              "Error: Invalid command line parameter. Specify help to get further information.\n");
    EXPECT_EQ(invalid.exitStatus, 22);
    EXPECT_TRUE(invalid.comparesCalls);
    EXPECT_FALSE(ReadOne("").comparesCalls);

    const Case refused = ReadOne("", "result: KRV error 9: no\n");
    EXPECT_EQ(refused.standardError, "KRV error 9: no\n");
    EXPECT_EQ(refused.exitStatus, 9);
    EXPECT_EQ(ReadOne("exit: 245\n", "result: KRV error 501: no\n").exitStatus, 245);
}

TEST(CaseFile, PutsTheSessionsOwnCallsAroundCallsInSession) {
    const char* const kCreate = "KrvSessionCreate server=\".\"";
    EXPECT_THAT(ReadOne("calls in session\n    KrvVolumeErase\n").calls,
                ElementsAre(kCreate, "KrvVolumeErase", "KrvSessionClose"));
    EXPECT_THAT(ReadOne("calls in session: none\n").calls, ElementsAre(kCreate, "KrvSessionClose"));
    EXPECT_THAT(ReadOne("calls in session on My Server\n    KrvVolumeErase\n").calls,
                ElementsAre("KrvSessionCreate server=\"My Server\"", "KrvVolumeErase", "KrvSessionClose"));
    EXPECT_TRUE(ReadOne("calls in session: none\n").comparesCalls);
}

TEST(CaseFile, ExpandsRangesAndRepetitionsOfCalls) {
    EXPECT_THAT(ReadOne("calls\n    KrvGetJukebox J=8 (twice)\n").calls,
                ElementsAre("KrvGetJukebox J=8", "KrvGetJukebox J=8"));
    EXPECT_THAT(ReadOne("calls\n    KrvMediaScan M=1 S=9..11 side=2\n    KrvVolumeErase V=3..4\n").calls,
                ElementsAre("KrvMediaScan M=1 S=9 side=2", "KrvMediaScan M=1 S=10 side=2",
                            "KrvMediaScan M=1 S=11 side=2", "KrvVolumeErase V=3", "KrvVolumeErase V=4"));
    EXPECT_THAT(ReadOne("calls\n    KrvJukeboxSetName name=\"V=1..2\"\n").calls,
                ElementsAre("KrvJukeboxSetName name=\"V=1..2\""));
}

TEST(CaseFile, UsesTheFilesFarmInCasesThatNameNone) {
    const auto cases = Read(
        "farm a\n    jukebox 1\nfarm b\n    jukebox 2\nfarm: a\n"
        "case one\nwords:\nresult: quiet\nscript\n    fail x\n"
        "case two\nwords:\nresult: quiet\nfarm: b\n"
        "case three\nwords:\nresult: quiet\nfarm: none\n");
    ASSERT_EQ(cases.size(), 3U);
    EXPECT_EQ(cases[0].run.script, "jukebox 1\nfail x\n");
    EXPECT_EQ(cases[1].run.script, "jukebox 2\n");
    EXPECT_EQ(cases[2].run.script, "");
}

TEST(CaseFile, MakesACaseOfEachRowOfATable) {
    for (const char* const text : {
             "case <name> costs <code>\nwords: <name>\nresult: KRV error <code>: <name>\n"
             "each\n    name code\n    pears 4\n    \"two figs\" 5\n",
             "each fruit\n    name code\n    pears 4\n    \"two figs\" 5\n\n"
             "case <name> costs <code>\neach: fruit\nwords: <name>\nresult: KRV error <code>: <name>\n",
         }) {
        const auto cases = Read(text);
        ASSERT_EQ(cases.size(), 2U);
        EXPECT_EQ(cases[0].name, "pears costs 4");
        EXPECT_EQ(cases[0].exitStatus, 4);
        EXPECT_THAT(cases[1].commandLines.at(0).words, ElementsAre("two", "figs"));
        EXPECT_EQ(cases[1].standardError, "KRV error 5: two figs\n");
    }
}

TEST(CaseFile, RefusesWhatItDoesNotUnderstand) {
    for (const char* const text : {
             "words: x\n",                                                       // no case
             "case a\nresult: quiet\n",                                          // no words
             "case a\nwords: x\n",                                               // no result
             "case a\nwords: 'x\nresult: quiet\n",                               // an open quote
             "case a\nwords: x\nresult: excellent\n",                            // no such result
             "case a\nwords: x\nresult: KRV error 501: y\n",                     // needs its exit status
             "case a\nwords: x\nexit: x\n",                                      // no number
             "case a\nwords: x\nstdout\n    blank \nresult: quiet\n",            // an invisible end
             "case a\nwords: x\nstdout\n    {flag}\nresult: quiet\n",            // no such text
             "case a\nwords: x\ngolden: rose\nresult: quiet\n",                  // no such file
             "case a\nwords: x\nfarm: b\nresult: quiet\n",                       // no such farm
             "case a\nwords: x\nstdou: nothing\nresult: quiet\n",                // no such setting
             "case a\n    x\n",                                                  // no block
             "case a\nwords: x\ninterrupt: soon\n",                              // no such moment
             "case a\nwords: x\ninterrupt: after 6 calls and 5\n",               // no unit
             "case a\nwords: x\nresult: quiet\ncalls\n    KrvGetSide S=2..1\n",  // a falling range
             "case a\nwords: x\nresult: quiet\ncalls in session\n    KrvSessionClose\n",  // implied
             "case a\neach: b\nwords: x\nresult: quiet\n",                                // no such table
             "case a\nwords: x\nresult: quiet\neach\n    n\n",                            // no rows
             "case a\nwords: x\nresult: quiet\neach\n    n m\n    1\n",                   // a gap
         }) {
        EXPECT_THROW((void)Read(text), std::exception) << text;
    }
}

TEST(ShellWords, SplitsAsAShellDoes) {
    EXPECT_THAT(SplitShellWords("  a  b "), ElementsAre("a", "b"));
    EXPECT_THAT(SplitShellWords(R"(a"b c"d 'e "f' "g\"h" i\ j)"),
                ElementsAre("ab cd", "e \"f", "g\"h", "i j"));
    EXPECT_THAT(SplitShellWords(R"("" '' '\')"), ElementsAre("", "", "\\"));
    EXPECT_THAT(SplitShellWords(""), ElementsAre());
    EXPECT_THROW((void)SplitShellWords("'a"), std::runtime_error);
}

}  // namespace
}  // namespace e2e
