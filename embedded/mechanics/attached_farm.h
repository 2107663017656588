#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "embedded/catalogue/attached_media.h"
#include "embedded/catalogue/element_sync.h"
#include "embedded/catalogue/format_erase_finalize.h"
#include "embedded/mechanics/robot_lock.h"

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
using Recording = std::function<ScanResult(Database&)>;

// The real jukeboxes of a server. Before media are moved, what is going to happen is stored; after a crash,
// the elements tell whether it has happened. Not for several threads at once.
class AttachedFarm {
  public:
    AttachedFarm(FarmAccess access, JukeboxOpener open);
    AttachedFarm(const AttachedFarm&) = delete;
    AttachedFarm& operator=(const AttachedFarm&) = delete;
    ~AttachedFarm() = default;

    // Looks at the elements of all changers once and brings the catalogue up to date. Moves nothing and waits
    // for no robot.
    void LookAtAll();

    // What the next calls need besides, asked as soon as the robot is theirs; throws a Refusal otherwise.
    void RequireOfCalls(std::function<void(Database&)> condition);

    // Each waits for the robot, puts right what a crash has left, and moves. Refused before anything moves,
    // or after what was moved is in the catalogue.
    Recording Import(const SlotKey& key);
    Recording Export(const SlotKey& key);
    Recording Scan(const SideKey& key);
    Recording Format(const SideKey& key, const FormatWishes& wishes);
    Recording Erase(const SideKey& key);
    Recording Finalize(const SideKey& key);

    // Makes the changer look at its elements itself, and brings media in drives home.
    void TakeInventory(int32_t jukebox);

    PhysicalJukebox& Open(int32_t jukebox);

  private:
    // The robot of a jukebox is this process's: no other process of this farm moves media, and no other host.
    struct Turn {
        Turn(const std::filesystem::path& farm, int32_t jukebox) : lock(farm, jukebox) {}
        RobotLock lock;
        std::unique_ptr<Hold> hold;
    };
    using Lock = std::shared_ptr<Turn>;

    std::string NameOf(int32_t jukebox);
    Lock WaitForRobot(int32_t jukebox);
    Lock TryRobot(int32_t jukebox);

    // What the elements hold, while no process moves anything. The robot of a process that died may still be
    // on its way; its medium is waited for.
    std::vector<ElementState> LookAfterUnfinishedMove(int32_t jukebox);

    // With the lock. Returns what the elements hold then.
    std::vector<ElementState> PutRight(int32_t jukebox);
    std::vector<LoadedMedium> Settle(const Sighting& sighting);

    // A move with its intent; when it fails, the catalogue says what has happened before this throws.
    void Move(int32_t jukebox, const Intent& intent, Turning turning);
    Recording Carry(int32_t jukebox, const Lock& lock, const MovePlan& plan,
                    std::string (*text)(Database&, const Transfer&));
    // Reads the sides of a plan, one load after the other.
    std::vector<ReadSide> ReadSides(int32_t jukebox, const LoadPlan& plan);
    // Media are known before they are written.
    void ReadUnreadMedium(const SideKey& key);

    using Planner = std::function<WritePlan(Database&)>;
    using Writer = std::function<SideChange(PhysicalJukebox&, int32_t drive, const WritePlan&)>;
    enum class Task { Format, Change };
    Recording Write(const SideKey& key, const Planner& plan, const Writer& write, Task task);
    SideChange WriteLoaded(int32_t jukebox, const LoadPlan& load, const WritePlan& plan, const Writer& write,
                           std::vector<ReadSide>& written);

    SideReading ReadLoaded(int32_t jukebox, const LoadPlan& plan, int32_t side);
    void BringHome(int32_t jukebox, const LoadPlan& plan, Turning turning);
    void BringHomeIfPossible(int32_t jukebox, const LoadPlan& plan, Turning turning);

    FarmAccess m_access;
    JukeboxOpener m_open;
    std::function<void(Database&)> m_condition = [](Database&) {};
    std::map<int32_t, std::unique_ptr<PhysicalJukebox>> m_jukeboxes;
};

}  // namespace embedded
