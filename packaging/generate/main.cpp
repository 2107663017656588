#include <sstream>
#include <stdexcept>
#include <string>

#include "packaging/generate/fill_file.h"
#include "packaging/generate/manual_blocks.h"
#include "packaging/generate/shell_tables.h"

namespace {

// The block for a mark in a template:
//
//   table SHELL NAME        a table of a completion script, see shell_tables.h
//   manual PART [COMMAND]   a part of a manual page, see manual_blocks.h
std::string BlockOf(const std::string& mark) {
    std::istringstream words(mark);
    std::string kind;
    std::string first;
    std::string second;
    words >> kind >> first >> second;
    if (kind == "manual") return krvcmd::ManualBlock(first, second);
    if (kind == "table") return krvcmd::ShellTable(first, second);
    throw std::runtime_error("unknown mark: @" + mark + "@");
}

}  // namespace

// Fills a template of a completion script or of a manual page.
int main(int argc, char** argv) {
    return krvcmd::FillFile(argc, argv, BlockOf);
}
