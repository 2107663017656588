#include "krvcmd/frontend/parsing/read_value.h"

#include <utility>

#include "krvcmd/frontend/parsing/token.h"

namespace krvcmd {
namespace {

Status InvalidValue() {
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
            return InvalidValue();
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
    if (form.idForm == ValueSpec::kId && !pieces.Skip(TokenType::At)) return InvalidValue();

    std::vector<NumberRange> ranges;
    do {
        NumberRange range;
        if (!ReadRange(pieces, range)) return InvalidValue();
        ranges.push_back(range);
    } while (pieces.Skip(TokenType::Comma));
    if (!pieces.AtEnd()) return InvalidValue();

    parameter.ranges = std::move(ranges);
    parameter.valueKind = ValueKind::Numbers;
    return {};
}

}  // namespace krvcmd
