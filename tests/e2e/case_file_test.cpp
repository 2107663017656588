#include "tests/e2e/case_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/e2e/known_texts.h"
#include "tests/e2e/shell_words.h"

namespace e2e {
namespace {

using testing::ElementsAre;

TEST(CaseFile, ReadsEverySetting) {
    const auto cases = ReadCases(
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
        "interrupt: after 6 calls\n"
        "terminate: after 7 calls\n"
        "script\n"
        "    fail KrvServiceStop\n"
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
    EXPECT_THAT(only.commandLines, ElementsAre("query \"a b\"", "q"));
    EXPECT_EQ(only.run.script, "jukebox 8\njukebox 9\nfail KrvServiceStop\n");
    EXPECT_EQ(only.run.columns, 80);
    EXPECT_EQ(only.run.locale, "C.UTF-8");
    EXPECT_TRUE(only.run.merged);
    ASSERT_EQ(only.run.signals.size(), 2U);
    EXPECT_EQ(only.run.signals[0].afterCalls, 6U);
    EXPECT_EQ(only.run.signals[0].interruption, Interruption::Interrupt);
    EXPECT_EQ(only.run.signals[1].interruption, Interruption::Terminate);
    EXPECT_EQ(only.standardOutput, std::string(kBanner) + "blank at the end \n\na dollar$\n\ttab\n");
    EXPECT_EQ(only.standardError, "oops\n");
    EXPECT_EQ(only.exitStatus, 245);
    EXPECT_TRUE(only.comparesCalls);
    EXPECT_THAT(only.calls, ElementsAre("KrvSessionClose"));
}

TEST(CaseFile, KnowsResultsAndShortForms) {
    const auto cases = ReadCases(
        "case one\nwords:\nstdout: nothing\nresult: invalid\ncalls: none\n"
        "case two\nwords: x\noutput: full disk\nresult: quiet\n");
    ASSERT_EQ(cases.size(), 2U);
    EXPECT_EQ(cases[0].standardOutput, "");
    EXPECT_EQ(cases[0].standardError, kInvalid);
    EXPECT_EQ(cases[0].exitStatus, 22);
    EXPECT_TRUE(cases[0].comparesCalls);
    EXPECT_THAT(cases[0].commandLines, ElementsAre(""));
    EXPECT_EQ(cases[1].run.output, OutputTo::FullDisk);
    EXPECT_FALSE(cases[1].comparesCalls);
}

TEST(CaseFile, RefusesWhatItDoesNotUnderstand) {
    for (const char* const text : {
             "words: x\n",                                                   // no case
             "case a\nstdout: nothing\nresult: quiet\n",                     // no words
             "case a\nwords: x\nresult: quiet\n",                            // no output
             "case a\nwords: x\nstdout: nothing\n",                          // no result
             "case a\nwords: x\nstdout: nothing\nresult: excellent\n",       // no such result
             "case a\nwords: x\nstdout: nothing\nexit: x\n",                 // no number
             "case a\nwords: x\nstdout\n    blank \nresult: quiet\n",        // the end cannot be seen
             "case a\nwords: x\nstdout\n    {flag}\nresult: quiet\n",        // no such text
             "case a\nwords: x\nfarm: b\nstdout: nothing\nresult: quiet\n",  // no such farm
             "case a\nwords: x\nstdou: nothing\nresult: quiet\n",            // no such setting
             "case a\n    x\n",                                              // no block
             "case a\nwords: x\ninterrupt: soon\n",                          // no such moment
         }) {
        EXPECT_THROW((void)ReadCases(text), std::exception) << text;
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
