// Fills a template of a completion script or of a manual page with what the program's own tables know:
// krvcmd_generate TEMPLATE OUTPUT

#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "packaging/generate/blocks.h"
#include "packaging/generate/fill_template.h"

namespace {

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) throw std::runtime_error("cannot be read");
    return text.str();
}

void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    if (!file) throw std::runtime_error("cannot write " + path);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: krvcmd_generate TEMPLATE OUTPUT\n";
        return 2;
    }
    try {
        WriteFile(argv[2], krvcmd::FillTemplate(ReadFile(argv[1]), krvcmd::BlockOf));
    } catch (const std::exception& failure) {
        std::cerr << argv[1] << ": " << failure.what() << "\n";
        return 1;
    }
    return 0;
}
