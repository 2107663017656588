#include "tests/fuzz/scratch_folder.h"

#include <unistd.h>

#include "tests/fuzz/fuzz_target.h"

namespace krvcmd::fuzz {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
    const fs::path memory = "/dev/shm";
    fs::path parent = fs::is_directory(memory) ? memory : fs::temp_directory_path();
    std::string pattern = (parent / "krvsim-fuzz-XXXXXX").string();
    Require(mkdtemp(pattern.data()) != nullptr, "a folder can be made in " + parent.string());
    m_path = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

void ScratchFolder::Remember() {
    m_files.clear();
    for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
        std::ifstream file(entry.path(), std::ios::binary);
        m_files[entry.path()] = {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
}

void ScratchFolder::Restore() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
        if (!m_files.contains(entry.path())) fs::remove_all(entry.path());
    }
    for (const auto& [path, bytes] : m_files) {
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
}

}  // namespace krvcmd::fuzz
