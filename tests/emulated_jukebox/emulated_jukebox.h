#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace embedded::attached {

// An emulated jukebox in a folder of its own; it ends with the object. Every failure to do what is asked ends
// the test program with what the script has said.
class EmulatedJukebox {
  public:
    // `options` as the script takes them: "--slots 8 --drives 2".
    explicit EmulatedJukebox(const std::string& options);
    EmulatedJukebox(const EmulatedJukebox&) = delete;
    EmulatedJukebox& operator=(const EmulatedJukebox&) = delete;
    ~EmulatedJukebox();

    // Of the changer; iscsi://127.0.0.1:PORT/TARGET/LUN.
    const std::string& GetAddress() const { return m_address; }
    // Of the drive with this number, which counts from 1.
    std::string GetDriveAddress(int number) const;
    // 127.0.0.1:PORT.
    std::string GetPortal() const;
    std::string GetTarget() const;
    std::filesystem::path GetFolder() const { return m_folder; }

    // One more command of the script, such as "remove" and "1024"; returns what it prints, without the line's
    // end.
    std::string Run(const std::string& command, const std::string& words = "") const;

    // Stops the daemon's process without ending it, and lets it go on.
    void Freeze() const;
    void Thaw() const;

  private:
    int GetProcess() const;

    std::filesystem::path m_folder;
    std::string m_address;
};

}  // namespace embedded::attached
