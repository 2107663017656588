#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace krvcmd::fuzz {

// A folder for one process, whose files can be put back as they were. In memory where the system offers
// that; removed at the end of the process.
class ScratchFolder {
  public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

    // From now on Restore brings the files back to what they are now.
    void Remember();
    void Restore() const;

  private:
    std::filesystem::path m_path;
    std::map<std::filesystem::path, std::string> m_files;
};

}  // namespace krvcmd::fuzz
