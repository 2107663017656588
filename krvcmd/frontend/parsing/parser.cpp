#include "krvcmd/frontend/parsing/parser.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "krvcmd/frontend/grammar/command_grammar.h"
#include "krvcmd/frontend/parsing/token.h"

namespace krvcmd {
namespace {

Status InvalidCommandLine() {
    return Status::SystemError(os_code::kInvalidCommandLine);
}

// Reads the pieces of a value one after the other.
class PieceReader {
  public:
    explicit PieceReader(std::vector<Token> pieces) : m_pieces(std::move(pieces)) {}

    bool AtEnd() const { return m_position == m_pieces.size(); }

    bool Skip(TokenType type) {
        if (AtEnd() || m_pieces[m_position].type != type) return false;
        ++m_position;
        return true;
    }

    bool ReadNumber(int32_t& value) {
        if (AtEnd()) return false;
        const Token& piece = m_pieces[m_position];
        if (piece.type != TokenType::Number || piece.outOfRange) return false;
        value = piece.value;
        ++m_position;
        return true;
    }

  private:
    std::vector<Token> m_pieces;
    size_t m_position = 0;
};

bool ReadRange(PieceReader& pieces, NumberRange& range) {
    if (!pieces.ReadNumber(range.from)) return false;
    range.to = range.from;
    range.writtenAsRange = pieces.Skip(TokenType::Dash);
    return !range.writtenAsRange || pieces.ReadNumber(range.to);
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
    if (std::ranges::count_if(candidates, &KeywordNode::IsPlaceholder) != 1) return nullptr;
    return *std::ranges::find_if(candidates, &KeywordNode::IsPlaceholder);
}

RecognisedWord Recognise(std::string_view word, KeywordNode::Table candidates) {
    if (const KeywordNode* node = FindKeyword(candidates, word)) return {node, std::nullopt};

    const auto lettersEnd = std::ranges::find_if_not(word, IsLetter);
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

bool TakesValue(const KeywordNode& node) {
    return !node.values.empty();
}

Status ReadValue(Parameter& parameter, std::string_view text) {
    const ValueSpec* numberForm = nullptr;
    const ValueSpec* textForm = nullptr;
    for (const ValueSpec& form : parameter.node->values) {
        if (form.valueType == ValueSpec::kNumber) {
            numberForm = &form;
        } else if (form.valueType == ValueSpec::kText) {
            textForm = &form;
        } else {
            return InvalidCommandLine();
        }
    }
    if (numberForm != nullptr) {
        Status status = ReadNumberList(parameter, *numberForm, text);
        if (status.IsOk() || textForm == nullptr) return status;
    }
    if (text.starts_with('=')) text.remove_prefix(1);
    parameter.text = text;
    parameter.valueKind = ValueKind::Text;
    return {};
}

Status ReadNumberList(Parameter& parameter, const ValueSpec& form, std::string_view text) {
    PieceReader pieces(SplitValue(text));
    pieces.Skip(TokenType::Equals);
    if (form.idForm == ValueSpec::kId && !pieces.Skip(TokenType::At)) return InvalidCommandLine();

    std::vector<NumberRange> ranges;
    do {
        NumberRange range;
        if (!ReadRange(pieces, range)) return InvalidCommandLine();
        ranges.push_back(range);
    } while (pieces.Skip(TokenType::Comma));
    if (!pieces.AtEnd()) return InvalidCommandLine();

    parameter.ranges = std::move(ranges);
    parameter.valueKind = ValueKind::Numbers;
    return {};
}

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
