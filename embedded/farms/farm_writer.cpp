#include "embedded/farms/farm_writer.h"

#include <optional>
#include <vector>

#include "embedded/model/strings.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kWriteServer = R"sql(
    INSERT INTO server (id, name, running, epoch, next_volume) VALUES (1, ?1, 1, 1, 1)
)sql";
constexpr Sql kJukebox = R"sql(
    INSERT INTO jukebox (id, name, enabled, double_sided, vendor, product, revision, scsi1, scsi2, scsi3,
        drive_count, magazine_count, slot_count)
    VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)
)sql";
constexpr Sql kMagazine = R"sql(
    INSERT INTO magazine (jukebox, number, slot_count, first_slot, present) VALUES (?1, ?2, ?3, ?4, ?5)
)sql";
constexpr Sql kDrive = R"sql(
    INSERT INTO drive (jukebox, number, enabled, vendor, product, revision, scsi1, scsi2, scsi3, value1, value2)
    VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11)
)sql";
constexpr Sql kSlot = R"sql(
    INSERT INTO slot (jukebox, magazine, number, state) VALUES (?1, ?2, ?3, ?4)
)sql";
constexpr Sql kMedium = R"sql(
    INSERT INTO medium (id, type, sides, place, jukebox, magazine, slot) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)
)sql";
constexpr Sql kSide = R"sql(
    INSERT INTO side (medium, side, content, finalization, sequential, volume, part)
    VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)
)sql";
constexpr Sql kVolume = R"sql(
    INSERT INTO volume (id, type, state, enabled, file_system, label, total, free, value1, value2)
    VALUES (?1, ?2, 2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)
)sql";
constexpr Sql kDirectory = R"sql(
    INSERT INTO directory (volume, position, name) VALUES (?1, ?2, ?3)
)sql";

// The rule of UsualState for all volumes at once.
constexpr Sql kSetUsualStates = R"sql(
    UPDATE volume
    SET state = CASE WHEN places.reached = places.total OR (volume.type = 1 AND places.reached > 0)
        THEN 1 - volume.enabled ELSE 2 END
    FROM (
        SELECT i.volume AS id, count(*) AS total, sum(d.place = 1 AND g.present = 1) AS reached
        FROM side i
        CROSS JOIN medium d ON d.id = i.medium
        LEFT JOIN magazine g ON d.place = 1 AND g.jukebox = d.jukebox AND g.number = d.magazine
        WHERE i.volume IS NOT NULL GROUP BY i.volume
    ) AS places
    WHERE places.id = volume.id
)sql";
constexpr Sql kOddState = R"sql(
    INSERT INTO odd_state (volume, state) SELECT id, ?2 FROM volume WHERE id = ?1 AND state <> ?2
)sql";
constexpr Sql kShownState = R"sql(UPDATE volume SET state = ?2 WHERE id = ?1)sql";

constexpr Sql kSetServer = R"sql(
    UPDATE server
    SET running = ?1, next_volume = max(?2, 1 + coalesce((SELECT max(id) FROM volume WHERE id > 0), 0))
)sql";

constexpr Sql kSetNameAndEpoch = R"sql(UPDATE server SET name = ?1, epoch = ?2)sql";

// The states of a magazine's slots, in order.
std::vector<SlotState> StatesOf(const FarmMagazine& magazine) {
    std::vector<SlotState> states(static_cast<size_t>(magazine.slotCount), SlotState::Empty);
    for (const FarmMedium& medium : magazine.media)
        states[static_cast<size_t>(medium.slot - 1)] = SlotState::Full;
    for (const FarmSlot& odd : magazine.oddSlots)
        states[static_cast<size_t>(odd.number - 1)] = odd.state;
    return states;
}

}  // namespace

FarmWriter::FarmWriter(Database& database, std::string_view server, std::function<void()> onPart)
    : m_database(database), m_onPart(std::move(onPart)) {
    Run(m_database, kWriteServer, server);
}

FarmWriter::FarmWriter(Database& database) : m_database(database) {}

void FarmWriter::AddJukebox(const FarmJukebox& jukebox) {
    int32_t presentSlots = 0;
    for (const FarmMagazine& magazine : jukebox.magazines)
        presentSlots += magazine.present ? magazine.slotCount : 0;
    const FarmDevice& changer = jukebox.changer;
    Run(m_database, kJukebox, jukebox.id, jukebox.name, jukebox.enabled, jukebox.doubleSided, changer.vendor,
        changer.product, changer.revision, changer.scsi[0], changer.scsi[1], changer.scsi[2],
        jukebox.drives.size(), jukebox.magazines.size(), presentSlots);

    int32_t number = 0;
    for (const FarmDrive& drive : jukebox.drives) {
        const FarmDevice& device = drive.device;
        Run(m_database, kDrive, jukebox.id, number++, drive.enabled, device.vendor, device.product,
            device.revision, device.scsi[0], device.scsi[1], device.scsi[2], drive.values[0],
            drive.values[1]);
    }
    number = 0;
    int32_t firstSlot = 0;
    for (const FarmMagazine& magazine : jukebox.magazines) {
        AddMagazine(jukebox.id, number++, firstSlot, magazine);
        firstSlot += magazine.slotCount;
    }
    int32_t position = 0;
    for (const FarmMedium& medium : jukebox.waiting) {
        AddMedium(medium, Place::ImportStation, jukebox.id, 0, position++);
    }
    position = 0;
    for (const FarmMedium& medium : jukebox.exported) {
        AddMedium(medium, Place::ExportStation, jukebox.id, 0, position++);
    }
}

void FarmWriter::AddMagazine(int32_t jukebox, int32_t number, int32_t firstSlot,
                             const FarmMagazine& magazine) {
    Run(m_database, kMagazine, jukebox, number, magazine.slotCount, firstSlot, magazine.present);
    int32_t slot = 0;
    for (const SlotState state : StatesOf(magazine)) {
        Run(m_database, kSlot, jukebox, number, slot++, state);
        ReportPart();
    }
    for (const FarmMedium& medium : magazine.media) {
        AddMedium(medium, Place::Slot, jukebox, number, medium.slot - 1);
    }
}

void FarmWriter::AddMedium(const FarmMedium& medium, Place place, int32_t jukebox, int32_t magazine,
                           int32_t slot) {
    ++m_lastMedium;
    Run(m_database, kMedium, m_lastMedium, medium.type, medium.sides.size(), place, jukebox, magazine, slot);
    int32_t number = 0;
    for (const FarmSide& side : medium.sides) {
        const auto volume = side.volume == 0 ? std::nullopt : std::optional(side.volume);
        Run(m_database, kSide, m_lastMedium, number++, side.content, side.finalization, side.sequential,
            volume, side.part);
    }
}

void FarmWriter::AddToShelf(const FarmMedium& medium) {
    AddMedium(medium, Place::Shelf, 0, 0, m_shelfLength++);
}

void FarmWriter::AddVolume(const FarmVolume& volume) {
    Run(m_database, kVolume, volume.id, volume.type, volume.enabled, volume.fileSystem, volume.label,
        volume.total, volume.free, volume.value1, volume.value2);
    int32_t position = 0;
    for (const std::string& directory : volume.directories)
        Run(m_database, kDirectory, volume.id, position++, directory);
    if (volume.state.has_value()) m_shownStates.emplace_back(volume.id, *volume.state);
    ReportPart();
}

void FarmWriter::Finish(bool running, int32_t nextVolume) {
    Run(m_database, kSetUsualStates);
    for (const auto& [volume, state] : m_shownStates) {
        Run(m_database, kOddState, volume, state);
        Run(m_database, kShownState, volume, state);
    }
    Run(m_database, kSetServer, running, nextVolume);
}

void WriteFarm(Database& database, std::string_view server, const Farm& farm, std::function<void()> onPart) {
    FarmWriter writer(database, server, std::move(onPart));
    for (const FarmJukebox& jukebox : farm.jukeboxes)
        writer.AddJukebox(jukebox);
    for (const FarmVolume& volume : farm.volumes)
        writer.AddVolume(volume);
    for (const FarmMedium& medium : farm.shelf)
        writer.AddToShelf(medium);
    writer.Finish(farm.running, farm.nextVolume);
}

void ReplaceFarm(Database& database, std::string_view server, const std::function<void(Database&)>& fill) {
    const int64_t epoch = FindValue<int64_t>(database, "SELECT epoch FROM server").value_or(0);
    for (const char* table : {"server", "jukebox", "magazine", "drive", "slot", "medium", "volume", "side",
                              "odd_state", "directory", "fault", "journal", "busy_jukebox"}) {
        database.Execute(Joined({"DELETE FROM ", table}));
    }
    fill(database);
    Run(database, kSetNameAndEpoch, server, epoch + 1);
}

}  // namespace embedded
