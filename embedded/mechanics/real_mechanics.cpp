#include "embedded/mechanics/real_mechanics.h"

#include <algorithm>
#include <string>
#include <utility>

#include "embedded/catalogue/item_texts.h"
#include "embedded/model/refusal.h"

namespace embedded {
namespace {

std::vector<uint16_t> FullDrives(const std::vector<ElementState>& elements) {
    std::vector<uint16_t> full;
    for (const ElementState& element : elements) {
        if (element.kind == ElementKind::Drive && element.isFull) full.push_back(element.address);
    }
    return full;
}

Refusal NotInPlace(uint16_t element) {
    return Refuse(Code::UnexpectedPlace, {"element " + std::to_string(element)});
}

Turning TurningOf(int32_t side) {
    return side == 1 ? Turning::Invert : Turning::Keep;
}

// Some changers cannot turn media: what they show as the other side is the same one.
bool IsSameSide(const SideReading& one, const SideReading& other) {
    return one.content == other.content && one.uuid == other.uuid && one.label == other.label &&
           one.total == other.total;
}

}  // namespace

bool IsFull(const std::vector<ElementState>& elements, uint16_t address) {
    const auto found = std::ranges::find(elements, address, &ElementState::address);
    return found != elements.end() && found->isFull;
}

AttachedFarm::RealMechanics::RealMechanics(AttachedFarm& farm, int32_t jukebox,
                                           std::vector<ElementState> elements)
    : m_farm(farm), m_jukebox(jukebox), m_elements(std::move(elements)) {}

Sighting AttachedFarm::RealMechanics::Look() {
    if (std::exchange(m_hasMoved, false)) m_elements = Robot().LookAtElements();
    return {m_jukebox, m_elements, Robot::AtRest};
}

void AttachedFarm::RealMechanics::ConfirmWrite(Database& database) const {
    if (m_plan.has_value()) ConfirmWriting(database, *m_plan, m_written);
}

// ---- Moving media

void AttachedFarm::RealMechanics::Carry(const Transfer& transfer, const ElementPair& elements) {
    m_hasMoved = true;
    m_farm.Move(m_jukebox, {transfer.medium.id, elements.source, elements.destination}, Turning::Keep);
    const Sighting sighting = Look();
    if (IsFull(sighting.elements, elements.destination) && !IsFull(sighting.elements, elements.source))
        return;
    (void)m_farm.Settle(sighting);
    throw NotInPlace(elements.destination);
}

std::vector<ReadSide> AttachedFarm::RealMechanics::Import(const Transfer& transfer) {
    ElementPair elements;
    m_farm.m_access.look([&](Database& database) { elements = ElementsOfImport(database, transfer); });
    Carry(transfer, elements);
    return {};
}

void AttachedFarm::RealMechanics::Export(const Transfer& transfer) {
    ElementPair elements;
    m_farm.m_access.look([&](Database& database) { elements = ElementsOfExport(database, transfer); });
    Carry(transfer, elements);
}

void AttachedFarm::RealMechanics::Load(const LoadPlan& load, Turning turning) {
    m_hasMoved = true;
    m_farm.Move(m_jukebox, {load.slot.medium->id, load.home, load.drive}, turning);
}

void AttachedFarm::RealMechanics::BringHome(const LoadPlan& load, Turning turning) {
    m_farm.Move(m_jukebox, {load.slot.medium->id, load.drive, load.home}, turning);
}

void AttachedFarm::RealMechanics::BringHomeIfPossible(const LoadPlan& load, Turning turning) {
    try {
        if (IsFull(Robot().LookAtElements(), load.drive)) BringHome(load, turning);
        (void)m_farm.Settle(Look());
    } catch (const Refusal&) {
        // The next call finds the medium in the drive and brings it home.
        return;
    }
}

// ---- Reading

std::vector<ReadSide> AttachedFarm::RealMechanics::Read(const Slot& slot, int32_t side) {
    LoadPlan load;
    m_farm.m_access.look([&](Database& database) {
        if (!slot.medium.has_value()) throw Refuse(Code::NoMedium, {PlaceText(database, slot.place)});
        load = PlanLoad(database, slot, side, FullDrives(m_elements));
    });
    if (!IsFull(m_elements, load.home)) throw NotInPlace(load.home);
    std::vector<ReadSide> sides;
    for (const int32_t one : load.sides) {
        SideReading reading = ReadLoaded(load, one);
        if (!sides.empty() && IsSameSide(sides.back().reading, reading)) break;
        sides.push_back({one, std::move(reading)});
    }
    return sides;
}

SideReading AttachedFarm::RealMechanics::ReadLoaded(const LoadPlan& load, int32_t side) {
    const Turning turning = TurningOf(side);
    Load(load, turning);
    try {
        SideReading reading = Robot().ReadSide(load.driveNumber);
        BringHome(load, turning);
        return reading;
    } catch (const Refusal&) {
        BringHomeIfPossible(load, turning);
        throw;
    }
}

// ---- Writing

WrittenSides AttachedFarm::RealMechanics::Write(const WritePlan& plan) {
    std::vector<LoadPlan> loads;
    m_farm.m_access.look([&](Database& database) {
        for (const Side& side : plan.sides)
            loads.push_back(PlanLoad(database, plan.slot, side.number, FullDrives(m_elements)));
    });
    RequireWritingDrive(loads.front(), plan.slot.medium->type);
    WrittenSides written;
    for (const LoadPlan& load : loads) {
        WriteLoaded(load, plan, written);
        if (written.end.side != SideAfter::Done) break;
    }
    m_plan = plan;
    m_written = written;
    return written;
}

void AttachedFarm::RealMechanics::RequireWritingDrive(const LoadPlan& load, uint32_t mediumType) {
    if (Robot().CanWrite(load.driveNumber, mediumType)) return;
    throw Refuse(Code::CannotWriteHere,
                 {m_farm.NameOf(m_jukebox),
                  "drive " + std::to_string(load.driveNumber + 1) + " does not write this kind of medium"});
}

void AttachedFarm::RealMechanics::WriteLoaded(const LoadPlan& load, const WritePlan& plan,
                                              WrittenSides& written) {
    const int32_t side = load.sides.front();
    const Turning turning = TurningOf(side);
    m_farm.m_access.change([&](Database& database) { MarkUnread(database, plan.slot); });
    Load(load, turning);
    try {
        written.end = WriteInDrive(load.driveNumber, plan);
        if (written.end.side == SideAfter::Done) {
            written.sides.push_back({side, Robot().ReadSide(load.driveNumber)});
        }
        if (written.end.side == SideAfter::Bad) {
            SideReading bad;
            bad.content = Content::Bad;
            written.sides.push_back({side, bad});
        }
        BringHome(load, turning);
    } catch (const Refusal&) {
        BringHomeIfPossible(load, turning);
        throw;
    }
}

SideChange AttachedFarm::RealMechanics::WriteInDrive(int32_t drive, const WritePlan& plan) {
    switch (plan.task) {
        case WriteTask::Format:
            return Robot().FormatSide(drive, {plan.label, plan.isSequential});
        case WriteTask::Erase:
            return Robot().EraseSide(drive);
        case WriteTask::Finalize:
            break;
    }
    return Robot().FinalizeSide(drive);
}

}  // namespace embedded
