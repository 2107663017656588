#include "packaging/generate/fill_template.h"

#include <sstream>

#include "krvcmd/console/writer/output_object.h"

namespace krvcmd {
namespace {

constexpr std::string_view kVersionMark = "@version@";

std::string WithVersion(std::string line) {
    for (size_t at = line.find(kVersionMark); at != std::string::npos; at = line.find(kVersionMark, at)) {
        line.replace(at, kVersionMark.size(), KRVCMD_VERSION);
    }
    return line;
}

}  // namespace

std::string FillTemplate(std::string_view text,
                         const std::function<std::string(const std::string&)>& blockOf) {
    std::istringstream lines{std::string(text)};
    std::string filled;
    for (std::string line; std::getline(lines, line);) {
        line = WithVersion(line);
        const size_t begin = line.find_first_not_of(' ');
        const bool isMark =
            begin != std::string::npos && line.size() > begin + 2 && line[begin] == '@' && line.back() == '@';
        if (!isMark) {
            filled += line + "\n";
            continue;
        }
        std::istringstream block(blockOf(line.substr(begin + 1, line.size() - begin - 2)));
        for (std::string blockLine; std::getline(block, blockLine);) {
            filled += (blockLine.empty() ? blockLine : line.substr(0, begin) + blockLine) + "\n";
        }
    }
    return filled;
}

std::string ProgramText(std::string_view text) {
    std::string replaced(text);
    Ostrel::UI::Console::ReplacePlaceholder(replaced, "[CmdLine]", "krvcmd");
    Ostrel::UI::Console::ReplacePlaceholder(replaced, "[ProductName]", "Carvoline");
    return replaced;
}

}  // namespace krvcmd
