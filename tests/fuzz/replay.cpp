// Feeds every file of the folders named on the command line to a fuzz target, so that seeds and past
// findings are ordinary tests.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void Replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    // Exactly as long as it is, so that a sanitizer sees a step too far.
    std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
    data.shrink_to_fit();
    std::printf("%s\n", file.string().c_str());
    (void)std::fflush(stdout);
    (void)LLVMFuzzerTestOneInput(data.data(), data.size());
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) continue;
        for (const std::filesystem::path& file : FilesOf(argv[i])) {
            Replay(file);
            ++count;
        }
    }
    std::printf("%zu files\n", count);
    return count > 0 ? 0 : 1;
}
