#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace krvcmd::fuzz {

// A temporary folder for one process, whose files can be restored. In memory where the system offers that;
// removed at the end of the process.
class ScratchFolder {
  public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

    // Saves the files for Restore.
    void Remember();
    void Restore() const;

  private:
    std::filesystem::path m_path;
    std::map<std::filesystem::path, std::string> m_files;
};

}  // namespace krvcmd::fuzz
