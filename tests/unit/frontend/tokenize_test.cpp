#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krvcmd/frontend/parsing/token.h"
#include "tests/support/command_line.h"

namespace krvcmd {
namespace {

using test::Words;

// The texts of the word tokens, or the error.
std::string Tokenized(const Words& words) {
    TokenStream stream;
    const Status status = Tokenize(words, stream);
    if (!status.IsOk()) return test::Text(status);
    std::string text;
    Token token;
    while (stream.Read(token).IsOk()) {
        EXPECT_EQ(token.type, TokenType::Word);
        text += "[" + token.text + "]";
    }
    return text;
}

// The pieces of a value: numbers as #N, words in brackets, separators by their type's number.
std::string Split(std::string_view text) {
    std::string result;
    for (const Token& piece : SplitValue(text)) {
        if (!result.empty()) result += " ";
        if (piece.type == TokenType::Word) {
            result += "[" + piece.text + "]";
        } else if (piece.type == TokenType::Number) {
            result += piece.outOfRange ? "#out-of-range" : "#" + std::to_string(piece.value);
        } else {
            result += std::to_string(static_cast<uint32_t>(piece.type));
        }
    }
    return result;
}

TEST(Tokenize, MakesEachArgumentOneWord) {
    EXPECT_EQ(Tokenized({"query", "volumes", "J@8", "a b,c=d"}), "[query][volumes][J@8][a b,c=d]");
}

TEST(Tokenize, GivesNoTokensWithoutArgumentsOrWhenTheFirstIsEmpty) {
    EXPECT_EQ(Tokenized({}), "");
    EXPECT_EQ(Tokenized({""}), "");
    EXPECT_EQ(Tokenized({"", "query"}), "");
    EXPECT_EQ(Tokenized({"", ""}), "");
}

TEST(Tokenize, RefusesAnEmptyArgumentAnywhereElse) {
    EXPECT_EQ(Tokenized({"query", ""}), "error 22");
    EXPECT_EQ(Tokenized({"query", "", "volumes"}), "error 22");
}

TEST(Tokenize, ForgetsWhatTheStreamHeldBefore) {
    TokenStream stream({Token{TokenType::Word, "old"}});
    ASSERT_TRUE(Tokenize({}, stream).IsOk());
    EXPECT_EQ(stream.Size(), 0U);
}

TEST(TokenStream, EndsWithSystemError2EachTimeItIsReadPastItsEnd) {
    TokenStream stream({Token{TokenType::Word, "only"}});
    Token token;
    EXPECT_TRUE(stream.Read(token).IsOk());
    EXPECT_EQ(token.text, "only");
    EXPECT_EQ(test::Text(stream.Read(token)), "error 2");
    EXPECT_EQ(test::Text(stream.Read(token)), "error 2");
}

TEST(SplitValue, KnowsEverySeparator) {
    EXPECT_EQ(Split("="), "4");
    EXPECT_EQ(Split(","), "5");
    EXPECT_EQ(Split("-"), "6");
    EXPECT_EQ(Split("/"), "6");
    EXPECT_EQ(Split("."), "7");
    EXPECT_EQ(Split("@"), "8");
    EXPECT_EQ(Split(";"), "9");
    EXPECT_EQ(Split(" "), "10");
    EXPECT_EQ(Split("=,-/.@; "), "4 5 6 6 7 8 9 10");
}

TEST(SplitValue, SplitsNumbersAndSeparators) {
    EXPECT_EQ(Split("1,5,7"), "#1 5 #5 5 #7");
    EXPECT_EQ(Split("3-5"), "#3 6 #5");
    EXPECT_EQ(Split("3/5"), "#3 6 #5");
    EXPECT_EQ(Split("@17"), "8 #17");
    EXPECT_EQ(Split("=@17,33"), "4 8 #17 5 #33");
    EXPECT_EQ(Split("007"), "#7");
    EXPECT_EQ(Split("-1"), "6 #1");  // a separator, not a sign
    EXPECT_EQ(Split(""), "");
}

TEST(SplitValue, ExtendsAWordToTheEnd) {
    EXPECT_EQ(Split("=ILl"), "4 [ILl]");
    EXPECT_EQ(Split("MyBox 1,2"), "[MyBox 1,2]");
    EXPECT_EQ(Split("1,x,2"), "#1 5 [x,2]");
    EXPECT_EQ(Split("12ab34"), "#12 [ab34]");
    EXPECT_EQ(Split("\xFC"
                    "1"),
              "[\xFC"
              "1]");
}

TEST(SplitValue, MarksNumbersThatDoNotFit32Bits) {
    EXPECT_EQ(Split("2147483647"), "#2147483647");
    EXPECT_EQ(Split("2147483648"), "#out-of-range");
    EXPECT_EQ(Split("99999999999999999999999999"), "#out-of-range");
    EXPECT_EQ(Split("00000000000000000000000001"), "#1");
}

}  // namespace
}  // namespace krvcmd
