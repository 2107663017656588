#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/frontend/base/status.h"

namespace krvcmd {

enum class TokenType : uint32_t {
    Word = 2,
    Number = 3,
    Equals = 4,
    Comma = 5,
    Dash = 6,  // "-" and "/" alike
    Dot = 7,
    At = 8,
    Semicolon = 9,
    Blank = 10,
};

// One piece of input.
struct Token {
    TokenType type = TokenType::Word;
    std::string text;
    int32_t value = 0;        // of a number
    bool outOfRange = false;  // the number does not fit into 32 bits; `value` means nothing
};

// Tokens with a read position.
class TokenStream {
  public:
    TokenStream() = default;
    explicit TokenStream(std::vector<Token> tokens) : m_tokens(std::move(tokens)) {}

    // Hands out the next token. System error 2 past the last one: the end of the input, not a fault.
    Status Read(Token& token);

    size_t Size() const { return m_tokens.size(); }

  private:
    std::vector<Token> m_tokens;
    size_t m_position = 0;
};

// Makes each argument (those after the program's path) one word token. Without arguments, or when the first
// is empty, the stream is empty; an empty argument anywhere else is system error 22.
Status Tokenize(std::span<const char* const> arguments, TokenStream& stream);

// Splits one value into separators, runs of digits and words. A word reaches to the end of the text.
std::vector<Token> SplitValue(std::string_view text);

}  // namespace krvcmd
