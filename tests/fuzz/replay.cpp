// Feeds every file named on the command line to a fuzz target, so that seeds and past findings are ordinary
// tests.
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

namespace {

// Whether the file could be read.
bool Replay(const char* file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return false;
    const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    // Exactly as long as it is, so that a sanitizer sees a step too far.
    std::vector<uint8_t> data(bytes.begin(), bytes.end());
    data.shrink_to_fit();
    std::printf("%s\n", file);
    (void)std::fflush(stdout);
    (void)LLVMFuzzerTestOneInput(data.data(), data.size());
    return true;
}

}  // namespace

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
