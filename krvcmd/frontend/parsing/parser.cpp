#include "krvcmd/frontend/parsing/parser.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/grammar/keyword.h"
#include "krvcmd/frontend/parsing/read_value.h"

namespace krvcmd {
namespace {

Status InvalidCommandLine() {
    return Status::SystemError(os_code::kInvalidCommandLine);
}

// What a word of the command line was recognised as.
struct RecognisedWord {
    const KeywordNode* node = nullptr;              // null: nothing fits
    std::optional<std::string_view> attachedValue;  // the part of the word that is the node's value
};

// ASCII only, whatever the locale.
bool IsLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

const KeywordNode* TheOnlyPlaceholder(KeywordNode::Table candidates) {
    const auto isPlaceholder = [](const KeywordNode* node) { return node->IsPlaceholder(); };
    if (std::count_if(candidates.begin(), candidates.end(), isPlaceholder) != 1) return nullptr;
    return *std::find_if(candidates.begin(), candidates.end(), isPlaceholder);
}

RecognisedWord Recognise(std::string_view word, KeywordNode::Table candidates) {
    if (const KeywordNode* node = FindKeyword(candidates, word)) return {node, std::nullopt};

    const auto lettersEnd = std::find_if_not(word.begin(), word.end(), IsLetter);
    const auto letterCount = static_cast<size_t>(lettersEnd - word.begin());
    if (const KeywordNode* node = FindKeyword(candidates, word.substr(0, letterCount))) {
        return {node, word.substr(letterCount)};
    }
    if (const KeywordNode* node = TheOnlyPlaceholder(candidates)) return {node, word};
    return {};
}

// Gives the parameter its value: the one attached to its word, else the next word of the stream.
Status TakeValue(Parameter& parameter, std::optional<std::string_view> attachedValue, TokenStream& stream) {
    if (!TakesValue(*parameter.node)) return attachedValue ? InvalidCommandLine() : Status();
    if (attachedValue) return ReadValue(parameter, *attachedValue);
    Token token;
    if (!stream.Read(token).IsOk()) return InvalidCommandLine();
    return ReadValue(parameter, token.text);
}

}  // namespace

Status Parse(ParameterList& line, TokenStream& stream, KeywordNode::Table candidates) {
    Token token;
    while (stream.Read(token).IsOk()) {
        if (token.type != TokenType::Word) return InvalidCommandLine();
        const RecognisedWord word = Recognise(token.text, candidates);
        if (word.node == nullptr) return InvalidCommandLine();

        Parameter parameter;
        parameter.node = word.node;
        if (Status status = TakeValue(parameter, word.attachedValue, stream); !status.IsOk()) return status;
        switch (word.node->kind) {
            case KeywordKind::Option:
                line.options.push_back(std::move(parameter));
                break;
            case KeywordKind::Command:
                if (line.command != nullptr) return InvalidCommandLine();
                line.command = word.node;
                line.commandParameter = std::move(parameter);
                candidates = word.node->children;
                break;
            case KeywordKind::Parameter:
                line.parameters.push_back(std::move(parameter));
                break;
        }
    }
    return {};
}

Status ParseCommandLine(std::span<const char* const> arguments, ParameterList& line) {
    TokenStream stream;
    if (Status status = Tokenize(arguments, stream); !status.IsOk()) return status;
    return Parse(line, stream, CommandGrammar::TopLevel());
}

}  // namespace krvcmd
