#include "packaging/generate/blocks.h"

#include <sstream>
#include <stdexcept>

#include "packaging/generate/manual_blocks.h"
#include "packaging/generate/shell_tables.h"

namespace krvcmd {

std::string BlockOf(const std::string& mark) {
    std::istringstream words(mark);
    std::string kind;
    std::string first;
    std::string second;
    words >> kind >> first >> second;
    if (kind == "manual") return ManualBlock(first, second);
    if (kind == "table") return ShellTable(first, second);
    throw std::runtime_error("no such mark: @" + mark + "@");
}

}  // namespace krvcmd
