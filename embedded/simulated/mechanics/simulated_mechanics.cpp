#include "embedded/simulated/mechanics/simulated_mechanics.h"

#include <optional>
#include <utility>

#include "embedded/catalogue/change_made.h"
#include "embedded/catalogue/items.h"
#include "embedded/model/media_types.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kLastPositionInStation = R"sql(
    SELECT slot FROM medium WHERE place = ?1 AND jukebox = ?2 AND magazine = 0 ORDER BY slot DESC LIMIT 1
)sql";

constexpr Sql kSides = R"sql(
    SELECT i.side, i.content, i.finalization, i.sequential, v.id, v.file_system, v.label, v.total, v.free
    FROM side i LEFT JOIN volume v ON v.id = i.volume
    WHERE i.medium = ?1 ORDER BY i.side
)sql";

}  // namespace

std::vector<ReadSide> SimulatedMechanics::Import(const Transfer& transfer) {
    SetMediumPlace(m_database, transfer.medium.id, Place::Slot, transfer.slot);
    return ReadMedium(transfer.medium, kBothSides);
}

void SimulatedMechanics::Export(const Transfer& transfer) {
    const int32_t jukebox = transfer.slot.jukebox;
    const int32_t last =
        FindValue<int32_t>(m_database, kLastPositionInStation, Place::ExportStation, jukebox).value_or(-1);
    SetMediumPlace(m_database, transfer.medium.id, Place::ExportStation, {jukebox, 0, last + 1});
}

std::vector<ReadSide> SimulatedMechanics::Read(const Slot& slot, int32_t side) {
    if (!slot.medium.has_value()) return {};
    return ReadMedium(*slot.medium, side);
}

std::vector<ReadSide> SimulatedMechanics::ReadMedium(const Medium& medium, int32_t side) {
    std::vector<ReadSide> sides;
    Statement row(m_database, kSides, medium.id);
    while (row.Next()) {
        ReadSide read;
        read.isOnRecord = true;
        SideReading& reading = read.reading;
        reading.mediumType = medium.type;
        row >> read.side >> reading.content >> reading.finalization >> reading.isSequential;
        if (side != kBothSides && side != read.side) continue;
        if (row.Read<std::optional<int32_t>>().has_value())
            row >> reading.fileSystem >> reading.label >> reading.total >> reading.free;
        sides.push_back(std::move(read));
    }
    return sides;
}

SideReading SimulatedMechanics::AfterWriting(const WritePlan& plan, const Side& side) {
    SideReading reading;
    reading.mediumType = plan.slot.medium->type;
    reading.finalization = Finalization::NotFinalized;
    if (plan.task == WriteTask::Erase) return reading;
    reading.content = Content::FileSystem;
    if (plan.task == WriteTask::Finalize) {
        reading.isSequential = side.isSequential;
        reading.finalization = Finalization::Closed;
        return reading;
    }
    reading.isSequential = plan.isSequential;
    reading.fileSystem = FileSystemName(plan.isSequential ? Access::Sequential : Access::Random);
    reading.label = plan.label;
    if (const MediaType* type = FindMediaType(reading.mediumType)) {
        reading.total = type->capacity;
    } else if (side.volume != 0) {
        // Of an unknown type of medium only the volume tells the capacity.
        reading.total = FindVolume(m_database, side.volume).value_or(Volume{}).total;
    }
    reading.free = reading.total;
    return reading;
}

WrittenSides SimulatedMechanics::Write(const WritePlan& plan) {
    WrittenSides written;
    for (const Side& side : plan.sides)
        written.sides.push_back({side.number, AfterWriting(plan, side), false});
    return written;
}

CallOutcome RunSimulated(Database& database, Operation& operation) {
    SimulatedMechanics mechanics(database);
    operation.Plan(database);
    operation.Perform(mechanics);
    return operation.Record(database);
}

}  // namespace embedded
