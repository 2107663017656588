#include "packaging/generate/manual_text.h"

#include <cctype>
#include <sstream>

namespace krvcmd {
namespace {

using std::string_view;

std::string ManualCharacter(char character) {
    switch (character) {
        case '\\':
            return "\\e";
        case '-':
            return "\\-";
        case '\'':
            return "\\(aq";
        case '`':
            return "\\(ga";
        case '^':
            return "\\(ha";
        case '~':
            return "\\(ti";
        case '"':
            return "\\(dq";
        default:
            return {character};
    }
}

std::string Escaped(string_view text) {
    std::string escaped;
    for (const char character : text)
        escaped += ManualCharacter(character);
    return escaped;
}

bool IsWordCharacter(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '.' || character == '=';
}

}  // namespace

std::string FilledManualText(const std::string& text) {
    constexpr size_t kLineLength = 79;
    std::istringstream words(text);
    std::string filled;
    std::string line;
    for (std::string word; words >> word;) {
        if (!line.empty() && line.size() + 1 + word.size() > kLineLength) {
            filled += line + "\n";
            line.clear();
        }
        if (line.empty() && word.starts_with('.')) word.insert(0, "\\&");
        line += (line.empty() ? "" : " ") + word;
    }
    return filled + line;
}

std::string ManualText(string_view text) {
    return FilledManualText(Escaped(text));
}

std::string ManualLine(string_view line) {
    const std::string escaped = Escaped(line);
    return escaped.starts_with('.') ? "\\&" + escaped : escaped;
}

std::string ManualMacro(string_view macro, string_view text) {
    return "." + std::string(macro) + " \"" + Escaped(text) + "\"";
}

std::string ManualSyntax(string_view line) {
    std::string text;
    for (size_t at = 0; at < line.size();) {
        size_t end = at + 1;
        if (line[at] == '<') {
            end = line.find('>', at);
            text += "\\fI" + Escaped(line.substr(at + 1, end - at - 1)) + "\\fR";
            ++end;
        } else if (IsWordCharacter(line[at])) {
            while (end < line.size() && IsWordCharacter(line[end]))
                ++end;
            text += "\\fB" + Escaped(line.substr(at, end - at)) + "\\fR";
        } else {
            text += ManualCharacter(line[at]);
        }
        at = end;
    }
    return text;
}

std::string ManualProse(string_view text) {
    std::string prose;
    bool isName = false;
    for (const char character : text) {
        if (character == '`') {
            isName = !isName;
            prose += isName ? "\\fB" : "\\fR";
        } else {
            prose += ManualCharacter(character);
        }
    }
    return FilledManualText(prose);
}

}  // namespace krvcmd
