#pragma once

#include <cstdint>
#include <vector>

#include "embedded/operations/mechanics.h"
#include "embedded/operations/operation.h"
#include "embedded/store/database.h"

namespace embedded {

// Simulated jukeboxes: a medium is where the catalogue says, and on its sides is what the catalogue says.
// They act within the caller's transaction. What is written lasts as soon as it is recorded; nothing ever
// fails.
class SimulatedMechanics : public Mechanics {
  public:
    explicit SimulatedMechanics(Database& database) : m_database(database) {}

    // A drive reads every medium on its way into the jukebox.
    std::vector<ReadSide> Import(const Transfer& transfer) override;
    // The station has room for any number of media.
    void Export(const Transfer& transfer) override;
    std::vector<ReadSide> Read(const Slot& slot, int32_t side) override;
    WrittenSides Write(const WritePlan& plan) override;

  private:
    std::vector<ReadSide> ReadMedium(const Medium& medium, int32_t side);
    SideReading AfterWriting(const WritePlan& plan, const Side& side);

    Database& m_database;
};

// All steps of a call, in the caller's transaction.
CallOutcome RunSimulated(Database& database, Operation& operation);

}  // namespace embedded
