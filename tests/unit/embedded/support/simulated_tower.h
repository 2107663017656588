#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/model/refusal.h"
#include "embedded/operations/operation.h"
#include "embedded/store/database.h"
#include "tests/unit/embedded/support/farm_fixture.h"

namespace embedded_test {

// A server with a simulated jukebox "Tower", number 1, with one magazine of four slots. Discs are DVD-RAMs
// with one label a side; an empty label stands for a blank side.
class SimulatedTower {
  public:
    SimulatedTower();

    // The service knows the volumes.
    void PutIntoSlot(int32_t slot, const std::vector<std::string>& labels);
    // The service has never seen the volumes.
    void PutIntoStation(const std::vector<std::string>& labels);

    // The code that the call fails with.
    std::optional<embedded::Code> Do(std::unique_ptr<embedded::Operation> operation);

    embedded::Database& GetDatabase() { return *m_database; }

  private:
    enum class Volumes { Known, Unseen };
    void Put(embedded::Place place, int32_t position, const std::vector<std::string>& labels,
             Volumes volumes);

    std::unique_ptr<embedded::Database> m_database;
    int32_t m_waiting = 0;
    int32_t m_unseen = 0;  // volumes
};

}  // namespace embedded_test
