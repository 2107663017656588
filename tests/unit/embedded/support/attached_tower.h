#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/mechanics/attached_farm.h"
#include "embedded/model/refusal.h"
#include "tests/unit/embedded/support/farm_fixture.h"
#include "tests/unit/embedded/support/model_jukebox.h"

namespace embedded_test {

// A server with a jukebox "Tower", number 1, whose mechanics are a model. It turns media over and has two
// drives, a mail slot and four slots.
class AttachedTower {
  public:
    static constexpr int32_t kNumber = 1;

    AttachedTower();

    // A new process of the service.
    void Restart();

    // A disc with one label a side; an empty label stands for a blank side.
    void Put(uint16_t element, const std::string& tag, const std::vector<std::string>& labels);

    // A call with its recording; the code that it fails with.
    std::optional<embedded::Code> Do(std::unique_ptr<embedded::Operation> operation);

    embedded::Database& GetDatabase() { return *m_database; }
    embedded::AttachedFarm& GetFarm() { return *m_farm; }
    Mechanics& GetMechanics() { return m_mechanics; }

  private:
    Mechanics m_mechanics{2};
    std::unique_ptr<embedded::Database> m_database;
    std::unique_ptr<embedded::AttachedFarm> m_farm;
};

inline constexpr int32_t kSideA = 0;
inline constexpr int32_t kSideB = 1;
inline constexpr int32_t kBothSides = 2;

// In the tower.
SlotKey SlotAt(int32_t slot);
SideKey SideAt(int32_t slot, int32_t side);

}  // namespace embedded_test
