#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

namespace {

// False when the file cannot be read.
bool Replay(const char* file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return false;
    const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    // Exactly as long as the file, so that a sanitizer notices a read past the end.
    std::vector<uint8_t> data(bytes.begin(), bytes.end());
    data.shrink_to_fit();
    std::printf("%s\n", file);
    (void)std::fflush(stdout);
    (void)LLVMFuzzerTestOneInput(data.data(), data.size());
    return true;
}

}  // namespace

// Feeds every file named on the command line to a fuzz target, so that seeds and past findings are ordinary
// tests.
int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!Replay(argv[i])) {
            std::printf("%s cannot be read\n", argv[i]);
            return 1;
        }
    }
    std::printf("%d files\n", argc - 1);
    return argc > 1 ? 0 : 1;
}
