#include "embedded/mechanics/robot_lock.h"

#include <chrono>
#include <thread>

#include "embedded/catalogue/element_sync.h"
#include "embedded/catalogue/items.h"
#include "embedded/model/refusal.h"

namespace embedded {
namespace {

constexpr std::chrono::minutes kPatience{30};
constexpr std::chrono::milliseconds kPause{20};

std::filesystem::path LockPath(std::filesystem::path farm, int32_t jukebox) {
    farm += ".robot-" + std::to_string(jukebox);
    return farm;
}

FileLock Open(const std::filesystem::path& path) {
    try {
        return FileLock(path);
    } catch (const std::system_error& failure) {
        throw Refuse(Code::CannotOpenFile, {PathText(path), failure.code().message()});
    }
}

}  // namespace

RobotLock::RobotLock(const std::filesystem::path& farm, int32_t jukebox)
    : m_path(LockPath(farm, jukebox)), m_lock(Open(m_path)) {}

bool RobotLock::Try() {
    try {
        return m_lock.Try();
    } catch (const std::system_error& failure) {
        throw Refuse(Code::CannotOpenFile, {PathText(m_path), failure.code().message()});
    }
}

void RobotLock::Wait(const std::string& jukeboxName) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!Try()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            throw Refuse(Code::RobotBusy, {jukeboxName, std::to_string(kPatience.count())});
        }
        std::this_thread::sleep_for(kPause);
    }
}

std::vector<std::unique_ptr<RobotLock>> StopRobots(Database& database) {
    std::vector<std::unique_ptr<RobotLock>> locks;
    for (const int32_t jukebox : AttachedJukeboxes(database)) {
        locks.push_back(std::make_unique<RobotLock>(database.GetFile(), jukebox));
        locks.back()->Wait(FindJukebox(database, jukebox).name);
    }
    return locks;
}

}  // namespace embedded
