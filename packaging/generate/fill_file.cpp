#include "packaging/generate/fill_file.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "packaging/generate/fill_template.h"

namespace krvcmd {
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

}  // namespace

int FillFile(int argc, char** argv, const std::function<std::string(const std::string&)>& blockOf) {
    if (argc != 3) {
        std::cerr << "usage: " << argv[0] << " TEMPLATE OUTPUT\n";
        return 2;
    }
    try {
        WriteFile(argv[2], FillTemplate(ReadFile(argv[1]), blockOf));
    } catch (const std::exception& failure) {
        std::cerr << argv[1] << ": " << failure.what() << "\n";
        return 1;
    }
    return 0;
}

}  // namespace krvcmd
