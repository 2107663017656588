#include <algorithm>
#include <string>
#include <vector>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/parsing/parser.h"
#include "krvcmd/frontend/parsing/token.h"
#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {
namespace {

bool IsDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

void CheckPiece(const Token& piece, bool isLast) {
    constexpr std::string_view kSeparators = "=,-/.@; ";
    Require(!piece.text.empty(), "no piece is empty");
    switch (piece.type) {
        case TokenType::Word:
            Require(isLast, "a word swallows all that follows it");
            Require(kSeparators.find(piece.text.front()) == std::string_view::npos,
                    "a word begins with no separator");
            Require(!IsDigits(piece.text.substr(0, 1)), "a word begins with no digit");
            break;
        case TokenType::Number:
            Require(IsDigits(piece.text), "a number is made of digits");
            Require(piece.outOfRange || piece.value >= 0, "a number has no sign");
            if (!piece.outOfRange) {
                Require(
                    std::to_string(piece.value) ==
                        piece.text.substr(std::min(piece.text.find_first_not_of('0'), piece.text.size() - 1)),
                    "a number has its digits' value");
            }
            break;
        default:
            Require(piece.text.size() == 1 && kSeparators.find(piece.text) != std::string_view::npos,
                    "a separator is one of its characters");
    }
}

void ReadAsValueOf(const KeywordNode& node, std::string_view text) {
    if (!TakesValue(node)) return;
    Parameter parameter;
    parameter.node = &node;
    const Status status = ReadValue(parameter, text);
    if (!status.IsOk()) {
        Require(status.Code() == os_code::kInvalidCommandLine, "a bad value is error 22");
        return;
    }
    Require((parameter.valueKind == ValueKind::Numbers) == !parameter.ranges.empty(), "numbers are there");
    for (const NumberRange& range : parameter.ranges) {
        Require(range.from >= 0 && range.to >= 0, "the numbers of a range have no sign");
        Require(range.writtenAsRange || range.from == range.to, "a single number is a range of one");
    }
}

}  // namespace

}  // namespace krvcmd::fuzz

// Splits a value, and reads it as the value of every keyword.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace krvcmd;
    const std::string_view text = fuzz::TextOf(data, size);
    const std::vector<Token> pieces = SplitValue(text);
    std::string together;
    for (const Token& piece : pieces) {
        fuzz::CheckPiece(piece, &piece == &pieces.back());
        together += piece.text;
    }
    fuzz::Require(together == text, "the pieces make up the text");

    for (const KeywordNode* node : CommandGrammar::TopLevel()) {
        fuzz::ReadAsValueOf(*node, text);
        for (const KeywordNode* child : node->children)
            fuzz::ReadAsValueOf(*child, text);
    }
    return 0;
}
