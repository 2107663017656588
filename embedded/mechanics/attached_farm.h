#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "embedded/catalogue/attached_media.h"
#include "embedded/catalogue/element_sync.h"
#include "embedded/mechanics/robot_lock.h"
#include "embedded/operations/operation.h"

namespace embedded {

// How the catalogue of an attached farm is reached.
struct FarmAccess {
    using Work = std::function<void(Database&)>;
    std::filesystem::path file;
    std::function<void(const Work&)> look;    // shows the farm as of one moment
    std::function<void(const Work&)> change;  // one transaction
};

// The end of a call whose physical part is done: records it, in the caller's transaction. What it keeps alive
// keeps other processes from the robot until then.
using Recording = std::function<CallOutcome(Database&)>;

// The real jukeboxes of a server. Before media are moved, what is going to happen is stored; after a crash,
// the elements tell whether it has happened. Not for several threads at once.
class AttachedFarm {
  public:
    AttachedFarm(FarmAccess access, JukeboxOpener open);
    AttachedFarm(const AttachedFarm&) = delete;
    AttachedFarm& operator=(const AttachedFarm&) = delete;
    ~AttachedFarm() = default;

    // Reads the elements of all changers and brings the catalogue up to date; reads them again if another
    // process moves media meanwhile. Moves nothing. After a crash during a move, waits until the medium is
    // seen, at most for the time limit of a move.
    void LookAtAll();

    // Sets a check that each later operation runs as soon as it has the robot. `condition` throws a Refusal
    // to stop the operation.
    void SetPrecondition(std::function<void(Database&)> condition);

    // Waits for the robot, puts right what a crash has left, and plans and performs the operation. When it
    // throws a Refusal, either nothing has moved or the catalogue already shows the move.
    Recording Do(std::shared_ptr<Operation> operation);

    // Makes the changer look at its elements itself, and brings media in drives home.
    void TakeInventory(int32_t jukebox);

    PhysicalJukebox& Open(int32_t jukebox);

  private:
    // What an operation does in a jukebox whose robot is this process's.
    class RealMechanics;

    // While it exists, this process has the robot of the jukebox: no other process of this farm moves media,
    // and no other host.
    struct RobotAccess {
        RobotAccess(const std::filesystem::path& farm, int32_t jukebox) : lock(farm, jukebox) {}
        RobotLock lock;
        std::unique_ptr<Hold> hold;
    };
    using Lock = std::shared_ptr<RobotAccess>;

    std::string NameOf(int32_t jukebox);
    Lock WaitForRobot(int32_t jukebox);
    Lock TryRobot(int32_t jukebox);

    // What the elements hold, while no process moves anything. The robot of a process that died may still be
    // on its way; its medium is waited for.
    std::vector<ElementState> LookAfterUnfinishedMove(int32_t jukebox);

    // The following need the lock. Returns what the elements hold then.
    std::vector<ElementState> PutRight(int32_t jukebox);
    std::vector<LoadedMedium> Settle(const Sighting& sighting);

    // A move with its intent; when it fails, the catalogue says what has happened before this throws.
    void Move(int32_t jukebox, const Intent& intent, Turning turning);
    // Media are known before they are written.
    void ReadUnreadMedium(const SideKey& key);

    FarmAccess m_access;
    JukeboxOpener m_open;
    std::function<void(Database&)> m_condition = [](Database&) {};
    std::map<int32_t, std::unique_ptr<PhysicalJukebox>> m_jukeboxes;
};

}  // namespace embedded
