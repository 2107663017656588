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
    int32_t value = 0;  // of a number
    // The digits do not fit a signed 32-bit number, so the number stands for no value.
    bool outOfRange = false;
};

// Tokens with a read position.
class TokenStream {
  public:
    TokenStream() = default;
    explicit TokenStream(std::vector<Token> tokens) : m_tokens(std::move(tokens)) {}

    // Hands out the next token. Past the last one: system error 2, which readers take as the end
    // of the input, never as an error.
    Status Read(Token& token);

    size_t Size() const { return m_tokens.size(); }

  private:
    std::vector<Token> m_tokens;
    size_t m_position = 0;
};

// Makes every argument one word token that holds the whole argument. No arguments, or a first one
// that is empty, give an empty stream; an empty argument anywhere else is system error 22.
// `arguments` are those after the program's path.
Status Tokenize(std::span<const char* const> arguments, TokenStream& stream);

// Splits one value into separators, runs of digits and words. A word swallows all that follows it.
std::vector<Token> SplitValue(std::string_view text);

}  // namespace krvcmd
