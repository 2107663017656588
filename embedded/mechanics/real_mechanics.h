#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "embedded/mechanics/attached_farm.h"

namespace embedded {

bool IsFull(const std::vector<ElementState>& elements, uint16_t address);

// Moves media between elements and drives, each move with its intent. What an operation does is known to the
// catalogue when it has thrown, and else after a look.
class AttachedFarm::RealMechanics : public Mechanics {
  public:
    // `elements`: what they hold when the operation begins.
    RealMechanics(AttachedFarm& farm, int32_t jukebox, std::vector<ElementState> elements);

    std::vector<ReadSide> Import(const Transfer& transfer) override;
    void Export(const Transfer& transfer) override;
    std::vector<ReadSide> Read(const Slot& slot, int32_t side) override;
    WrittenSides Write(const WritePlan& plan) override;

    // What the elements hold now.
    Sighting Look();

    // After the operation is recorded, in its transaction.
    void ConfirmWrite(Database& database) const;

  private:
    PhysicalJukebox& Robot() { return m_farm.Open(m_jukebox); }

    void Carry(const Transfer& transfer, const ElementPair& elements);

    SideReading ReadLoaded(const LoadPlan& load, int32_t side);
    void WriteLoaded(const LoadPlan& load, const WritePlan& plan, WrittenSides& written);
    SideChange WriteInDrive(int32_t drive, const WritePlan& plan);
    void RequireWritingDrive(const LoadPlan& load, uint32_t mediumType);

    void Load(const LoadPlan& load, Turning turning);
    void BringHome(const LoadPlan& load, Turning turning);
    void BringHomeIfPossible(const LoadPlan& load, Turning turning);

    AttachedFarm& m_farm;
    int32_t m_jukebox;
    std::vector<ElementState> m_elements;
    bool m_hasMoved = false;
    std::optional<WritePlan> m_plan;  // of a write that was begun
    WrittenSides m_written;
};

}  // namespace embedded
