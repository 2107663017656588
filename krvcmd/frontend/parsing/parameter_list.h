#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "krvcmd/frontend/grammar/keyword.h"

namespace krvcmd {

// A number, or a range of numbers, as the user wrote it.
struct NumberRange {
    int32_t from = 0;
    int32_t to = 0;  // equal to `from` for a single number; may be below it
    bool writtenAsRange = false;
};

enum class ValueKind : uint32_t { None = 0, Text = 2, Numbers = 3 };

// One keyword of the command line, with its value.
struct Parameter {
    const KeywordNode* node = nullptr;  // a node of the grammar; never null in a parsed line
    ValueKind valueKind = ValueKind::None;
    std::string text;                 // ValueKind::Text
    std::vector<NumberRange> ranges;  // ValueKind::Numbers: at least one

    // True for a list of numbers and for any range, also one of a single number.
    bool IsMultiple() const {
        return ranges.size() > 1 || (ranges.size() == 1 && ranges.front().writtenAsRange);
    }
};

// The parsed command line.
struct ParameterList {
    std::vector<Parameter> options;        // given before the command: quiet, server
    const KeywordNode* command = nullptr;  // null until a command word is recognised
    Parameter commandParameter;            // of the command word itself
    std::vector<Parameter> parameters;     // given after the command
};

// The last parameter whose keyword, as the grammar spells it, is `keyword`; null when there is none.
inline const Parameter* FindParameter(const std::vector<Parameter>& parameters, std::string_view keyword) {
    const Parameter* last = nullptr;
    for (const Parameter& parameter : parameters) {
        if (parameter.node->keyword == keyword) last = &parameter;
    }
    return last;
}

}  // namespace krvcmd
