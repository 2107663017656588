#include "embedded/farms/farm_writer.h"

#include <optional>
#include <vector>

#include "embedded/model/joined.h"

namespace embedded {
namespace {

void Bind(sqlite3_stmt* statement, int position, std::string_view text) {
    sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

void Bind(sqlite3_stmt* statement, int position, std::optional<int64_t> number) {
    if (number.has_value()) {
        sqlite3_bind_int64(statement, position, *number);
    } else {
        sqlite3_bind_null(statement, position);
    }
}

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
    : m_database(database),
      m_onPart(std::move(onPart)),
      m_server(database.Prepare(
          "INSERT INTO server (id, name, running, epoch, next_volume) VALUES (1, ?, 1, 1, 1)")),
      m_jukebox(database.Prepare("INSERT INTO jukebox VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")),
      m_magazine(database.Prepare("INSERT INTO magazine VALUES (?, ?, ?, ?, ?)")),
      m_drive(database.Prepare("INSERT INTO drive VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")),
      m_slot(database.Prepare("INSERT INTO slot VALUES (?, ?, ?, ?)")),
      m_medium(database.Prepare("INSERT INTO medium VALUES (?, ?, ?, ?, ?, ?, ?)")),
      m_side(database.Prepare("INSERT INTO side VALUES (?, ?, ?, ?, ?, ?, ?)")),
      m_volume(database.Prepare("INSERT INTO volume VALUES (?, ?, 2, ?, ?, ?, ?, ?, ?, ?)")),
      m_directory(database.Prepare("INSERT INTO directory VALUES (?, ?, ?)")),
      m_oddState(
          database.Prepare("INSERT INTO odd_state SELECT id, ?2 FROM volume WHERE id = ?1 AND state <> ?2")),
      m_shownState(database.Prepare("UPDATE volume SET state = ?2 WHERE id = ?1")) {
    Insert(m_server, server);
}

template <typename... Values>
void FarmWriter::Insert(const StatementHandle& statement, const Values&... values) {
    int position = 0;
    (Bind(statement.get(), ++position, values), ...);
    const int result = sqlite3_step(statement.get());
    if (result != SQLITE_DONE) m_database.Fail(result);
    sqlite3_reset(statement.get());
}

void FarmWriter::AddJukebox(const FarmJukebox& jukebox) {
    int32_t presentSlots = 0;
    for (const FarmMagazine& magazine : jukebox.magazines)
        presentSlots += magazine.present ? magazine.slotCount : 0;
    const FarmDevice& changer = jukebox.changer;
    Insert(m_jukebox, jukebox.id, jukebox.name, jukebox.enabled, jukebox.doubleSided, changer.vendor,
           changer.product, changer.revision, changer.scsi[0], changer.scsi[1], changer.scsi[2],
           static_cast<int64_t>(jukebox.drives.size()), static_cast<int64_t>(jukebox.magazines.size()),
           presentSlots);

    int32_t number = 0;
    for (const FarmDrive& drive : jukebox.drives) {
        const FarmDevice& device = drive.device;
        Insert(m_drive, jukebox.id, number++, drive.enabled, device.vendor, device.product, device.revision,
               device.scsi[0], device.scsi[1], device.scsi[2], static_cast<int64_t>(drive.values[0]),
               static_cast<int64_t>(drive.values[1]));
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
    Insert(m_magazine, jukebox, number, magazine.slotCount, firstSlot, magazine.present);
    int32_t slot = 0;
    for (const SlotState state : StatesOf(magazine)) {
        Insert(m_slot, jukebox, number, slot++, static_cast<int64_t>(state));
        TellPart();
    }
    for (const FarmMedium& medium : magazine.media) {
        AddMedium(medium, Place::Slot, jukebox, number, medium.slot - 1);
    }
}

void FarmWriter::AddMedium(const FarmMedium& medium, Place place, int32_t jukebox, int32_t magazine,
                           int32_t slot) {
    ++m_lastMedium;
    Insert(m_medium, m_lastMedium, medium.type, static_cast<int64_t>(medium.sides.size()),
           static_cast<int64_t>(place), jukebox, magazine, slot);
    int32_t number = 0;
    for (const FarmSide& side : medium.sides) {
        const std::optional<int64_t> volume =
            side.volume == 0 ? std::nullopt : std::optional<int64_t>(side.volume);
        Insert(m_side, m_lastMedium, number++, static_cast<int64_t>(side.content),
               static_cast<int64_t>(side.finalization), side.sequential, volume, side.part);
    }
}

void FarmWriter::AddToShelf(const FarmMedium& medium) {
    AddMedium(medium, Place::Shelf, 0, 0, m_shelfLength++);
}

void FarmWriter::AddVolume(const FarmVolume& volume) {
    Insert(m_volume, volume.id, static_cast<int64_t>(volume.type), volume.enabled, volume.fileSystem,
           volume.label, static_cast<int64_t>(volume.total), static_cast<int64_t>(volume.free), volume.value1,
           volume.value2);
    int32_t position = 0;
    for (const std::string& directory : volume.directories)
        Insert(m_directory, volume.id, position++, directory);
    if (volume.state.has_value()) m_shownStates.emplace_back(volume.id, *volume.state);
    TellPart();
}

// A disc or a volume set is on-line when all of its sides are in slots of present magazines, a
// mirror when one is. The same rule holds for single volumes in RefreshVolumeState.
void FarmWriter::Finish(bool running, int32_t nextVolume) {
    m_database.Execute(
        "UPDATE volume SET state = CASE WHEN places.reached = places.total"
        " OR (volume.type = 1 AND places.reached > 0) THEN 1 - volume.enabled ELSE 2 END"
        " FROM (SELECT i.volume AS id, count(*) AS total, sum(d.place = 1 AND g.present = 1) AS reached"
        " FROM side i CROSS JOIN medium d ON d.id = i.medium"
        " LEFT JOIN magazine g ON d.place = 1 AND g.jukebox = d.jukebox AND g.number = d.magazine"
        " WHERE i.volume IS NOT NULL GROUP BY i.volume) AS places WHERE places.id = volume.id");
    for (const auto& [volume, state] : m_shownStates) {
        Insert(m_oddState, volume, state);
        Insert(m_shownState, volume, state);
    }
    const StatementHandle server = m_database.Prepare(
        "UPDATE server SET running = ?1,"
        " next_volume = max(?2, 1 + coalesce((SELECT max(id) FROM volume WHERE id > 0), 0))");
    Insert(server, running, nextVolume);
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
    const int64_t epoch = database.ReadNumber("SELECT epoch FROM server");
    for (const char* table : {"server", "jukebox", "magazine", "drive", "slot", "medium", "volume", "side",
                              "odd_state", "directory", "fault", "journal"}) {
        database.Execute(Joined({"DELETE FROM ", table}));
    }
    fill(database);
    const StatementHandle next = database.Prepare("UPDATE server SET name = ?1, epoch = ?2");
    Bind(next.get(), 1, server);
    Bind(next.get(), 2, epoch + 1);
    const int result = sqlite3_step(next.get());
    if (result != SQLITE_DONE) database.Fail(result);
}

}  // namespace embedded
