#include "embedded/mechanics/attached_farm.h"

#include <algorithm>
#include <thread>

#include "embedded/catalogue/attachment.h"
#include "embedded/catalogue/item_texts.h"

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

const ElementState* Find(const std::vector<ElementState>& elements, uint16_t address) {
    const auto found = std::ranges::find(elements, address, &ElementState::address);
    return found == elements.end() ? nullptr : &*found;
}

bool IsFull(const std::vector<ElementState>& elements, uint16_t address) {
    const ElementState* element = Find(elements, address);
    return element != nullptr && element->isFull;
}

std::vector<uint16_t> FullDrives(const std::vector<ElementState>& elements) {
    std::vector<uint16_t> full;
    for (const ElementState& element : elements) {
        if (element.kind == ElementKind::Drive && element.isFull) full.push_back(element.address);
    }
    return full;
}

// Whether the medium of a move is seen where it was, where it goes to, or in the gripper.
bool IsInSight(const std::vector<ElementState>& elements, const Intent& move) {
    const auto isInGripper = [](const ElementState& element) {
        return element.kind == ElementKind::Picker && element.isFull;
    };
    return IsFull(elements, move.source) || IsFull(elements, move.destination) ||
           std::ranges::any_of(elements, isInGripper);
}

// Some changers cannot turn media: what they show as the other side is the same one.
bool IsSameSide(const SideReading& one, const SideReading& other) {
    return one.content == other.content && one.uuid == other.uuid && one.label == other.label &&
           one.total == other.total;
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

void AttachedFarm::RequireOfCalls(std::function<void(Database&)> condition) {
    m_condition = std::move(condition);
}

AttachedFarm::Lock AttachedFarm::WaitForRobot(int32_t jukebox) {
    const std::string name = NameOf(jukebox);
    auto turn = std::make_shared<Turn>(m_access.file, jukebox);
    turn->lock.Wait(name);
    m_access.look(m_condition);
    turn->hold = Open(jukebox).KeepOtherHostsAway();
    return turn;
}

AttachedFarm::Lock AttachedFarm::TryRobot(int32_t jukebox) {
    auto turn = std::make_shared<Turn>(m_access.file, jukebox);
    if (!turn->lock.Try()) turn.reset();
    return turn;
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

Recording AttachedFarm::Carry(int32_t jukebox, const Lock& lock, const MovePlan& plan,
                              std::string (*text)(Database&, const Transfer&)) {
    std::string words;
    m_access.look([&](Database& database) { words = text(database, plan.transfer); });
    Move(jukebox, {plan.transfer.medium.id, plan.source, plan.destination}, Turning::Keep);
    const Sighting sighting{jukebox, Open(jukebox).LookAtElements(), Robot::AtRest};
    if (!IsFull(sighting.elements, plan.destination) || IsFull(sighting.elements, plan.source)) {
        (void)Settle(sighting);
        throw Refuse(Code::UnexpectedPlace, {"element " + std::to_string(plan.destination)});
    }
    return [lock, sighting, words](Database& database) {
        (void)Synchronize(database, {sighting});
        return ScanResult{words, std::nullopt};
    };
}

Recording AttachedFarm::Import(const SlotKey& key) {
    const Lock lock = WaitForRobot(key.jukeboxId);
    PutRight(key.jukeboxId);
    MovePlan plan;
    m_access.look([&](Database& database) { plan = PlanRealImport(database, key); });
    return Carry(key.jukeboxId, lock, plan, ImportText);
}

Recording AttachedFarm::Export(const SlotKey& key) {
    const Lock lock = WaitForRobot(key.jukeboxId);
    PutRight(key.jukeboxId);
    MovePlan plan;
    m_access.look([&](Database& database) { plan = PlanRealExport(database, key); });
    return Carry(key.jukeboxId, lock, plan, ExportText);
}

void AttachedFarm::BringHome(int32_t jukebox, const LoadPlan& plan, Turning turning) {
    Move(jukebox, {plan.slot.medium->id, plan.drive, plan.home}, turning);
}

SideReading AttachedFarm::ReadLoaded(int32_t jukebox, const LoadPlan& plan, int32_t side) {
    const Turning turning = side == 1 ? Turning::Invert : Turning::Keep;
    Move(jukebox, {plan.slot.medium->id, plan.home, plan.drive}, turning);
    try {
        SideReading reading = Open(jukebox).ReadSide(plan.driveNumber);
        BringHome(jukebox, plan, turning);
        return reading;
    } catch (const Refusal&) {
        BringHomeIfPossible(jukebox, plan, turning);
        throw;
    }
}

void AttachedFarm::BringHomeIfPossible(int32_t jukebox, const LoadPlan& plan, Turning turning) {
    try {
        PhysicalJukebox& robot = Open(jukebox);
        if (IsFull(robot.LookAtElements(), plan.drive)) BringHome(jukebox, plan, turning);
        (void)Settle({jukebox, robot.LookAtElements(), Robot::AtRest});
    } catch (const Refusal&) {
        // The next call finds the medium in the drive and brings it home.
        return;
    }
}

Recording AttachedFarm::Scan(const SideKey& key) {
    const Lock lock = WaitForRobot(key.jukeboxId);
    const std::vector<ElementState> before = PutRight(key.jukeboxId);
    LoadPlan plan;
    std::optional<Refusal> refusal;
    m_access.look([&](Database& database) {
        const Slot slot = FindSlotToScan(database, key);
        if (slot.medium.has_value()) {
            plan = PlanLoad(database, slot, key.side, FullDrives(before));
        } else {
            refusal = Refuse(Code::NoMedium, {PlaceText(database, slot.place)});
        }
    });
    if (refusal.has_value()) throw Refusal(*refusal);
    if (!IsFull(before, plan.home)) {
        throw Refuse(Code::UnexpectedPlace, {"element " + std::to_string(plan.home)});
    }
    const std::vector<ReadSide> sides = ReadSides(key.jukeboxId, plan);
    const Sighting sighting{key.jukeboxId, Open(key.jukeboxId).LookAtElements(), Robot::AtRest};
    return [lock, sighting, plan, sides](Database& database) {
        (void)Synchronize(database, {sighting});
        return RecordScan(database, plan.slot, sides);
    };
}

std::vector<ReadSide> AttachedFarm::ReadSides(int32_t jukebox, const LoadPlan& plan) {
    std::vector<ReadSide> sides;
    for (const int32_t side : plan.sides) {
        SideReading reading = ReadLoaded(jukebox, plan, side);
        if (!sides.empty() && IsSameSide(sides.back().reading, reading)) break;
        sides.push_back({side, std::move(reading)});
    }
    return sides;
}

void AttachedFarm::ReadUnreadMedium(const SideKey& key) {
    const std::vector<ElementState> elements = PutRight(key.jukeboxId);
    std::optional<LoadPlan> plan;
    m_access.look([&](Database& database) {
        const Slot slot = FindSlotToScan(database, key);
        if (!slot.medium.has_value() || slot.state == SlotState::Full) return;
        plan = PlanLoad(database, slot, key.side, FullDrives(elements));
    });
    if (!plan.has_value()) return;
    const std::vector<ReadSide> sides = ReadSides(key.jukeboxId, *plan);
    (void)Settle({key.jukeboxId, Open(key.jukeboxId).LookAtElements(), Robot::AtRest});
    m_access.change([&](Database& database) { (void)RecordScan(database, plan->slot, sides); });
}

SideChange AttachedFarm::WriteLoaded(int32_t jukebox, const LoadPlan& load, const WritePlan& plan,
                                     const Writer& write, std::vector<ReadSide>& written) {
    const int32_t side = load.sides.front();
    const Turning turning = side == 1 ? Turning::Invert : Turning::Keep;
    PhysicalJukebox& robot = Open(jukebox);
    m_access.change([&](Database& database) { MarkUnread(database, plan.slot); });
    Move(jukebox, {load.slot.medium->id, load.home, load.drive}, turning);
    try {
        SideChange change = write(robot, load.driveNumber, plan);
        if (change.side == SideAfter::Done) written.push_back({side, robot.ReadSide(load.driveNumber)});
        if (change.side == SideAfter::Bad) {
            SideReading bad;
            bad.content = Content::Bad;
            written.push_back({side, bad});
        }
        BringHome(jukebox, load, turning);
        return change;
    } catch (const Refusal&) {
        BringHomeIfPossible(jukebox, load, turning);
        throw;
    }
}

Recording AttachedFarm::Write(const SideKey& key, const Planner& planner, const Writer& write, Task task) {
    const int32_t jukebox = key.jukeboxId;
    const Lock lock = WaitForRobot(jukebox);
    m_access.look([&](Database& database) { RequireEnabledJukebox(database, jukebox); });
    ReadUnreadMedium(key);
    const std::vector<ElementState> elements = PutRight(jukebox);
    WritePlan plan;
    std::vector<LoadPlan> loads;
    m_access.look([&](Database& database) {
        plan = planner(database);
        for (const Side& side : plan.sides)
            loads.push_back(PlanLoad(database, plan.slot, side.number, FullDrives(elements)));
    });
    if (loads.empty()) return [lock](Database&) { return ScanResult{}; };
    if (!Open(jukebox).CanWrite(loads.front().driveNumber, plan.slot.medium->type)) {
        throw Refuse(Code::CannotWriteHere,
                     {NameOf(jukebox), "drive " + std::to_string(loads.front().driveNumber + 1) +
                                           " does not write this kind of medium"});
    }
    std::vector<ReadSide> written;
    SideChange last;
    for (const LoadPlan& load : loads) {
        last = WriteLoaded(jukebox, load, plan, write, written);
        if (last.side != SideAfter::Done) break;
    }
    const Sighting sighting{jukebox, Open(jukebox).LookAtElements(), Robot::AtRest};
    return [lock, sighting, plan, written, last, task](Database& database) {
        (void)Synchronize(database, {sighting});
        ScanResult result;
        if (!written.empty()) RecordWriting(database, plan.slot, written);
        if (last.side == SideAfter::Unknown) MarkUnread(database, plan.slot);
        if (last.side == SideAfter::Untouched && written.empty()) MarkUnchanged(database, plan.slot);
        if (last.side != SideAfter::Done) {
            result.refusal = Refuse(Code::DeviceTrouble, {last.trouble});
            return result;
        }
        const auto side = FindSide(database, *plan.slot.medium, plan.sides.front().number);
        result.change =
            task == Task::Format && side.has_value() ? FormatText(database, plan.slot, *side) : plan.text;
        return result;
    };
}

Recording AttachedFarm::Format(const SideKey& key, const FormatWishes& wishes) {
    return Write(
        key, [&](Database& database) { return PlanFormat(database, key, wishes); },
        [](PhysicalJukebox& robot, int32_t drive, const WritePlan& plan) {
            return robot.FormatSide(drive, {plan.label, plan.isSequential});
        },
        Task::Format);
}

Recording AttachedFarm::Erase(const SideKey& key) {
    return Write(
        key, [&](Database& database) { return PlanErase(database, key); },
        [](PhysicalJukebox& robot, int32_t drive, const WritePlan& /*plan*/) {
            return robot.EraseSide(drive);
        },
        Task::Change);
}

Recording AttachedFarm::Finalize(const SideKey& key) {
    return Write(
        key, [&](Database& database) { return PlanFinalize(database, key); },
        [](PhysicalJukebox& robot, int32_t drive, const WritePlan& /*plan*/) {
            return robot.FinalizeSide(drive);
        },
        Task::Change);
}

void AttachedFarm::TakeInventory(int32_t jukebox) {
    const Lock lock = WaitForRobot(jukebox);
    Open(jukebox).TakeInventory();
    PutRight(jukebox);
}

}  // namespace embedded
