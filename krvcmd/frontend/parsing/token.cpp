#include "krvcmd/frontend/parsing/token.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>
#include <utility>

namespace krvcmd {
namespace {

struct Separator {
    char character;
    TokenType type;
};

constexpr Separator kSeparators[] = {
    {'=', TokenType::Equals}, {',', TokenType::Comma}, {'-', TokenType::Dash},      {'/', TokenType::Dash},
    {'.', TokenType::Dot},    {'@', TokenType::At},    {';', TokenType::Semicolon}, {' ', TokenType::Blank},
};

const Separator* FindSeparator(char character) {
    const Separator* found = std::ranges::find(kSeparators, character, &Separator::character);
    return found == std::end(kSeparators) ? nullptr : found;
}

Token MakeNumber(std::string_view digits) {
    Token token{TokenType::Number, std::string(digits)};
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), token.value);
    token.outOfRange = result.ec != std::errc();
    return token;
}

}  // namespace

Status TokenStream::Read(Token& token) {
    if (m_position >= m_tokens.size()) return Status::SystemError(os_code::kNoSuchItem);
    token = std::move(m_tokens[m_position++]);
    return {};
}

Status Tokenize(std::span<const char* const> arguments, TokenStream& stream) {
    stream = TokenStream();
    if (arguments.empty() || std::string_view(arguments.front()).empty()) return {};
    std::vector<Token> tokens;
    for (const char* argument : arguments) {
        const std::string_view text = argument;
        if (text.empty()) return Status::SystemError(os_code::kInvalidCommandLine);
        tokens.push_back({TokenType::Word, std::string(text)});
    }
    stream = TokenStream(std::move(tokens));
    return {};
}

std::vector<Token> SplitValue(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789";
    std::vector<Token> pieces;
    while (!text.empty()) {
        if (const Separator* separator = FindSeparator(text.front())) {
            pieces.push_back({separator->type, std::string(1, text.front())});
            text.remove_prefix(1);
            continue;
        }
        const std::string_view digits = text.substr(0, text.find_first_not_of(kDigits));
        if (digits.empty()) {
            pieces.push_back({TokenType::Word, std::string(text)});
            break;
        }
        pieces.push_back(MakeNumber(digits));
        text.remove_prefix(digits.size());
    }
    return pieces;
}

}  // namespace krvcmd
