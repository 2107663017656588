#include "embedded/mechanics/attached_farm.h"

#include <algorithm>
#include <thread>

#include "embedded/catalogue/attachment.h"
#include "embedded/mechanics/real_mechanics.h"

namespace embedded {
namespace {

// How often a look is repeated that a move of another process went on beside.
constexpr int kMostLooks = 20;

// Between two looks for a medium that is on its way.
constexpr std::chrono::milliseconds kMovePause{50};

// Until when the robot of a process that died may go on with a move.
std::chrono::steady_clock::time_point LatestEnd(const Intent& move, TimeLimits::Seconds limit) {
    const std::chrono::system_clock::time_point begun{std::chrono::microseconds(move.begun)};
    const auto passed = std::chrono::system_clock::now() - begun;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - passed);
    return std::chrono::steady_clock::now() +
           std::clamp(left, std::chrono::milliseconds(0), std::chrono::milliseconds(limit));
}

// Whether the medium of a move is seen where it was, where it goes to, or in the gripper.
bool IsInSight(const std::vector<ElementState>& elements, const Intent& move) {
    const auto isInGripper = [](const ElementState& element) {
        return element.kind == ElementKind::Picker && element.isFull;
    };
    return IsFull(elements, move.source) || IsFull(elements, move.destination) ||
           std::ranges::any_of(elements, isInGripper);
}

}  // namespace

AttachedFarm::AttachedFarm(FarmAccess access, JukeboxOpener open)
    : m_access(std::move(access)), m_open(std::move(open)) {}

PhysicalJukebox& AttachedFarm::Open(int32_t jukebox) {
    auto& opened = m_jukeboxes[jukebox];
    if (opened != nullptr) return *opened;
    JukeboxAddress address;
    m_access.look([&](Database& database) { address = ReadJukeboxAddress(database, jukebox); });
    opened = m_open(address);
    return *opened;
}

std::string AttachedFarm::NameOf(int32_t jukebox) {
    std::string name;
    m_access.look([&](Database& database) { name = FindJukebox(database, jukebox).name; });
    return name;
}

void AttachedFarm::SetPrecondition(std::function<void(Database&)> condition) {
    m_condition = std::move(condition);
}

AttachedFarm::Lock AttachedFarm::WaitForRobot(int32_t jukebox) {
    const std::string name = NameOf(jukebox);
    auto access = std::make_shared<RobotAccess>(m_access.file, jukebox);
    access->lock.Wait(name);
    m_access.look(m_condition);
    access->hold = Open(jukebox).KeepOtherHostsAway();
    return access;
}

AttachedFarm::Lock AttachedFarm::TryRobot(int32_t jukebox) {
    auto access = std::make_shared<RobotAccess>(m_access.file, jukebox);
    if (!access->lock.Try()) access.reset();
    return access;
}

std::vector<ElementState> AttachedFarm::LookAfterUnfinishedMove(int32_t jukebox) {
    std::optional<Intent> move;
    TimeLimits limits;
    m_access.look([&](Database& database) {
        move = FindIntent(database, jukebox);
        limits = ReadTimeLimits(database, jukebox);
    });
    PhysicalJukebox& robot = Open(jukebox);
    std::vector<ElementState> elements = robot.LookAtElements();
    if (!move.has_value()) return elements;
    // The medium may have arrived within the look.
    if (IsFull(elements, move->source) && IsFull(elements, move->destination)) return robot.LookAtElements();
    const auto deadline = LatestEnd(*move, limits.move);
    while (!IsInSight(elements, *move) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(kMovePause);
        elements = robot.LookAtElements();
    }
    return elements;
}

void AttachedFarm::LookAtAll() {
    for (int look = 0; look < kMostLooks; ++look) {
        int64_t generation = 0;
        std::vector<Sighting> sightings;
        std::vector<Lock> locks;
        m_access.look([&](Database& database) {
            generation = ReadGeneration(database);
            for (const int32_t jukebox : AttachedJukeboxes(database)) {
                const bool isMoving = FindIntent(database, jukebox).has_value();
                sightings.push_back({jukebox, {}, isMoving ? Robot::Moving : Robot::AtRest});
            }
        });
        for (Sighting& sighting : sightings) {
            if (sighting.robot == Robot::Moving) {
                // The process that began the move may be gone.
                if (Lock lock = TryRobot(sighting.jukebox)) {
                    locks.push_back(std::move(lock));
                    sighting.robot = Robot::AtRest;
                }
            }
            sighting.elements = sighting.robot == Robot::Moving ? Open(sighting.jukebox).LookAtElements()
                                                                : LookAfterUnfinishedMove(sighting.jukebox);
        }
        bool isUpToDate = true;
        bool isDisturbed = false;
        m_access.look([&](Database& database) {
            isDisturbed = ReadGeneration(database) != generation;
            for (const Sighting& sighting : sightings)
                isUpToDate = isUpToDate && !Differs(database, sighting);
        });
        if (isDisturbed) continue;
        if (isUpToDate) return;
        m_access.change([&](Database& database) {
            isDisturbed = ReadGeneration(database) != generation;
            if (!isDisturbed) (void)Synchronize(database, sightings);
        });
        if (!isDisturbed) return;
    }
    // Another process moves one medium after the other and keeps the catalogue itself.
}

std::vector<LoadedMedium> AttachedFarm::Settle(const Sighting& sighting) {
    std::vector<LoadedMedium> loaded;
    bool differs = false;
    m_access.look([&](Database& database) {
        differs = Differs(database, sighting);
        if (differs) return;
        loaded =
            Reconcile(ReadKnownJukebox(database, sighting.jukebox), sighting.elements, sighting.robot).loaded;
    });
    if (differs) {
        m_access.change(
            [&](Database& database) { loaded = std::move(Synchronize(database, {sighting}).front()); });
    }
    return loaded;
}

std::vector<ElementState> AttachedFarm::PutRight(int32_t jukebox) {
    PhysicalJukebox& robot = Open(jukebox);
    std::vector<ElementState> elements = LookAfterUnfinishedMove(jukebox);
    for (const LoadedMedium& medium : Settle({jukebox, elements, Robot::AtRest})) {
        if (medium.home == 0) continue;
        try {
            const Turning turning = medium.isInverted ? Turning::Invert : Turning::Keep;
            robot.MoveMedium({medium.element, medium.home, turning});
        } catch (const Refusal&) {
            // Another program uses the drive, or the medium is stuck: the drive counts as taken.
        }
        elements = robot.LookAtElements();
        (void)Settle({jukebox, elements, Robot::AtRest});
    }
    return elements;
}

void AttachedFarm::Move(int32_t jukebox, const Intent& intent, Turning turning) {
    PhysicalJukebox& robot = Open(jukebox);
    m_access.change([&](Database& database) { BeginMove(database, jukebox, intent); });
    try {
        robot.MoveMedium({intent.source, intent.destination, turning});
    } catch (const Refusal& failure) {
        try {
            (void)Settle({jukebox, robot.LookAtElements(), Robot::AtRest});
        } catch (const Refusal&) {
            // The intent stays: the next call finds out what has happened.
            throw failure;
        }
        throw;
    }
}

void AttachedFarm::ReadUnreadMedium(const SideKey& key) {
    const int32_t jukebox = key.jukeboxId;
    RealMechanics mechanics(*this, jukebox, PutRight(jukebox));
    Slot slot;
    m_access.look([&](Database& database) { slot = FindSlotToScan(database, key); });
    if (!slot.medium.has_value() || slot.state == SlotState::Full) return;
    const std::vector<ReadSide> sides = mechanics.Read(slot, key.side);
    (void)Settle(mechanics.Look());
    m_access.change([&](Database& database) { (void)RecordScan(database, slot, key.side, sides); });
}

Recording AttachedFarm::Do(std::shared_ptr<Operation> operation) {
    const int32_t jukebox = operation->GetJukebox();
    const Lock lock = WaitForRobot(jukebox);
    if (const SideKey* key = operation->GetWrittenSide()) {
        m_access.look([&](Database& database) { RequireEnabledJukebox(database, jukebox); });
        ReadUnreadMedium(*key);
    }
    const auto mechanics = std::make_shared<RealMechanics>(*this, jukebox, PutRight(jukebox));
    m_access.look([&](Database& database) { operation->Plan(database); });
    operation->Perform(*mechanics);
    const Sighting sighting = mechanics->Look();
    return [lock, mechanics, sighting, operation = std::move(operation)](Database& database) {
        (void)Synchronize(database, {sighting});
        CallOutcome outcome = operation->Record(database);
        mechanics->ConfirmWrite(database);
        // How long a real jukebox takes is in the journal anyway.
        outcome.change.medium.reset();
        return outcome;
    };
}

void AttachedFarm::TakeInventory(int32_t jukebox) {
    const Lock lock = WaitForRobot(jukebox);
    Open(jukebox).TakeInventory();
    PutRight(jukebox);
}

}  // namespace embedded
