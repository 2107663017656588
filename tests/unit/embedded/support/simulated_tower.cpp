#include "tests/unit/embedded/support/simulated_tower.h"

#include "embedded/catalogue/items.h"
#include "embedded/catalogue/volume_changes.h"
#include "embedded/farms/farm_writer.h"
#include "embedded/simulated/mechanics/simulated_mechanics.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"
#include "tests/unit/embedded/support/model_jukebox.h"

namespace embedded_test {
namespace {

using embedded::Code;
using embedded::Content;
using embedded::Database;
using embedded::Place;
using embedded::Refusal;
using embedded::Sql;

constexpr int32_t kNumber = 1;

constexpr Sql kAddMedium = R"sql(
    INSERT INTO medium (type, sides, place, jukebox, magazine, slot) VALUES (12, ?1, ?2, ?3, 0, ?4) RETURNING id
)sql";
constexpr Sql kAddSide = R"sql(
    INSERT INTO side (medium, side, content, finalization, sequential, volume, part)
    VALUES (?1, ?2, ?3, 1, 0, nullif(?4, 0), 0)
)sql";
constexpr Sql kNumberVolume = R"sql(UPDATE volume SET id = ?2 WHERE id = ?1)sql";

}  // namespace

SimulatedTower::SimulatedTower() {
    embedded::FarmJukebox tower;
    tower.id = kNumber;
    tower.name = "Tower";
    tower.doubleSided = true;
    tower.magazines.resize(1);
    tower.magazines.front().slotCount = 4;
    embedded::CreateFarm("simulated", [&](Database& database) {
        embedded::FarmWriter writer(database, "simulated");
        writer.AddJukebox(tower);
        writer.Finish(true, 0);
    });
    m_database = embedded::OpenFarm("simulated", {});
}

void SimulatedTower::Put(Place place, int32_t position, const std::vector<std::string>& labels,
                         Volumes volumes) {
    InTransaction(*m_database, [&] {
        const auto medium =
            embedded::FindValue<int64_t>(*m_database, kAddMedium, labels.size(), place, kNumber, position);
        int32_t side = 0;
        for (const std::string& label : labels) {
            int32_t volume = 0;
            if (!label.empty()) {
                volume = AddVolume(*m_database, Mechanics::Recorded(label));
                if (volumes == Volumes::Unseen) {
                    embedded::Run(*m_database, kNumberVolume, volume, --m_unseen);
                    volume = m_unseen;
                }
            }
            const Content content = label.empty() ? Content::Blank : Content::FileSystem;
            embedded::Run(*m_database, kAddSide, *medium, side++, content, volume);
        }
    });
}

void SimulatedTower::PutIntoSlot(int32_t slot, const std::vector<std::string>& labels) {
    Put(Place::Slot, slot, labels, Volumes::Known);
    SetSlotState(*m_database, {kNumber, 0, slot}, embedded::SlotState::Full);
}

void SimulatedTower::PutIntoStation(const std::vector<std::string>& labels) {
    Put(Place::ImportStation, m_waiting++, labels, Volumes::Unseen);
}

std::optional<Code> SimulatedTower::Do(std::unique_ptr<embedded::Operation> operation) {
    std::optional<Refusal> refusal;
    try {
        InTransaction(*m_database, [&] { refusal = RunSimulated(*m_database, *operation).refusal; });
    } catch (const Refusal& thrown) {
        refusal.emplace(thrown);
    }
    if (refusal.has_value()) return static_cast<Code>(refusal->GetCode());
    return std::nullopt;
}

}  // namespace embedded_test
