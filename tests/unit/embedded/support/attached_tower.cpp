#include "tests/unit/embedded/support/attached_tower.h"

#include <utility>

#include "embedded/catalogue/attachment.h"
#include "embedded/farms/farm_writer.h"
#include "embedded/store/farm_file.h"

namespace embedded_test {
namespace {

using embedded::Code;
using embedded::Database;
using embedded::FarmAccess;
using embedded::Recording;
using embedded::Refusal;

}  // namespace

SlotKey SlotAt(int32_t slot) {
    return {sizeof(SlotKey), AttachedTower::kNumber, 0, slot};
}

SideKey SideAt(int32_t slot, int32_t side) {
    return {sizeof(SideKey), AttachedTower::kNumber, 0, slot, side};
}

AttachedTower::AttachedTower() {
    constexpr uint16_t kSlot = Mechanics::kFirstSlot;
    const embedded::ElementMap elements{{Mechanics::kPicker},
                                        {{kSlot, kSlot + 1, kSlot + 2, kSlot + 3}},
                                        {Mechanics::kMailSlot},
                                        {Mechanics::kFirstDrive, Mechanics::kFirstDrive + 1}};
    embedded::FarmJukebox tower;
    tower.id = kNumber;
    tower.name = "Tower";
    tower.doubleSided = true;
    tower.drives.resize(2);
    tower.magazines.resize(1);
    tower.magazines.front().slotCount = 4;
    embedded::JukeboxAddress address;
    address.name = "Tower";
    address.changer.address = "model";
    address.drives = {{"drive 1", ""}, {"drive 2", ""}};
    embedded::CreateFarm("tower", [&](Database& database) {
        embedded::FarmWriter writer(database, "tower");
        writer.AddJukebox(tower);
        RecordAttachment(database, kNumber, address, elements);
        writer.Finish(true, 0);
    });
    m_database = embedded::OpenFarm("tower", {});
    Restart();
}

void AttachedTower::Restart() {
    FarmAccess access;
    access.file = m_database->GetFile();
    access.look = [this](const FarmAccess::Work& work) { work(*m_database); };
    access.change = [this](const FarmAccess::Work& work) {
        InTransaction(*m_database, [&] { work(*m_database); });
    };
    m_farm = std::make_unique<embedded::AttachedFarm>(
        access, [this](const embedded::JukeboxAddress&) { return m_mechanics.Open(); });
    m_farm->LookAtAll();
}

void AttachedTower::Put(uint16_t element, const std::string& tag, const std::vector<std::string>& labels) {
    Mechanics::Disc disc{tag, {}, false, 0};
    for (const std::string& label : labels)
        disc.sides.push_back(label.empty() ? Mechanics::Blank() : Mechanics::Recorded(label));
    m_mechanics.Put(element, std::move(disc));
    m_farm->LookAtAll();
}

std::optional<Code> AttachedTower::Do(std::unique_ptr<embedded::Operation> operation) {
    try {
        const Recording record = m_farm->Do(std::move(operation));
        std::optional<Refusal> refusal;
        InTransaction(*m_database, [&] { refusal = record(*m_database).refusal; });
        if (refusal.has_value()) return static_cast<Code>(refusal->GetCode());
        return std::nullopt;
    } catch (const Refusal& refusal) {
        return static_cast<Code>(refusal.GetCode());
    }
}

}  // namespace embedded_test
