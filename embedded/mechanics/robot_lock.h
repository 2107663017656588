#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "embedded/platform/platform.h"
#include "embedded/store/database.h"

namespace embedded {

// The right to move media in one real jukebox. One process of this state folder has it at a time.
class RobotLock {
  public:
    // `farm` is the farm's file: the lock is a file beside it. Throws a Refusal when that cannot be made.
    RobotLock(const std::filesystem::path& farm, int32_t jukebox);

    bool Try();

    // Waits for the process that has it; throws a Refusal after a time in which any move would have ended.
    void Wait(const std::string& jukeboxName);

  private:
    std::filesystem::path m_path;
    FileLock m_lock;
};

// Waits for every robot of a farm; none moves while the result lives.
std::vector<std::unique_ptr<RobotLock>> StopRobots(Database& database);

}  // namespace embedded
