#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "packaging/generate/fill_template.h"
#include "packaging/generate/manual_blocks.h"
#include "packaging/generate/shell_tables.h"

namespace {

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) throw std::runtime_error("cannot read the file");
    return text.str();
}

void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    if (!file) throw std::runtime_error("cannot write " + path);
}

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
    if (argc != 3) {
        std::cerr << "usage: krvcmd_generate TEMPLATE OUTPUT\n";
        return 2;
    }
    try {
        WriteFile(argv[2], krvcmd::FillTemplate(ReadFile(argv[1]), BlockOf));
    } catch (const std::exception& failure) {
        std::cerr << argv[1] << ": " << failure.what() << "\n";
        return 1;
    }
    return 0;
}
