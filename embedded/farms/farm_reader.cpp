#include "embedded/farms/farm_reader.h"

#include <functional>
#include <unordered_map>

namespace embedded {
namespace {

std::string Text(sqlite3_stmt* statement, int column) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
    if (bytes == nullptr) return {};
    return {bytes, static_cast<size_t>(sqlite3_column_bytes(statement, column))};
}

int64_t Integer(sqlite3_stmt* statement, int column) {
    return sqlite3_column_int64(statement, column);
}
int32_t Number(sqlite3_stmt* statement, int column) {
    return static_cast<int32_t>(Integer(statement, column));
}
bool Flag(sqlite3_stmt* statement, int column) {
    return Integer(statement, column) != 0;
}

FarmDevice Device(sqlite3_stmt* statement, int column) {
    FarmDevice device;
    device.vendor = Text(statement, column);
    device.product = Text(statement, column + 1);
    device.revision = Text(statement, column + 2);
    for (int component = 0; component < 3; ++component) {
        device.scsi[component] = Number(statement, column + 3 + component);
    }
    return device;
}

class Reader {
  public:
    explicit Reader(Database& database) : m_database(database) {}

    Farm Read() {
        ReadServer();
        ReadJukeboxes();
        ReadMagazines();
        ReadDrives();
        ReadMedia();
        ReadSlots();
        ReadVolumes();
        DropUsualStates(m_farm);
        return std::move(m_farm);
    }

  private:
    void ForEach(const char* text, const std::function<void(sqlite3_stmt*)>& read) {
        const StatementHandle statement = m_database.Prepare(text);
        while (true) {
            const int result = sqlite3_step(statement.get());
            if (result == SQLITE_DONE) return;
            if (result != SQLITE_ROW) m_database.Fail(result);
            read(statement.get());
        }
    }

    // Null for a row whose jukebox or magazine is not there; such rows are for `krvsim check` to report.
    FarmJukebox* FindJukebox(int64_t id) {
        const auto found = m_jukeboxes.find(id);
        return found == m_jukeboxes.end() ? nullptr : &m_farm.jukeboxes[found->second];
    }
    FarmMagazine* FindMagazine(int64_t jukebox, int64_t number) {
        FarmJukebox* owner = FindJukebox(jukebox);
        if (owner == nullptr || number < 0 || static_cast<size_t>(number) >= owner->magazines.size())
            return nullptr;
        return &owner->magazines[static_cast<size_t>(number)];
    }

    void ReadServer() {
        ForEach("SELECT running, next_volume FROM server", [&](sqlite3_stmt* row) {
            m_farm.running = Flag(row, 0);
            m_farm.nextVolume = Number(row, 1);
        });
    }

    void ReadJukeboxes() {
        ForEach(
            "SELECT id, name, enabled, double_sided, vendor, product, revision, scsi1, scsi2, scsi3 FROM "
            "jukebox "
            "ORDER BY id",
            [&](sqlite3_stmt* row) {
                FarmJukebox jukebox;
                jukebox.id = Number(row, 0);
                jukebox.name = Text(row, 1);
                jukebox.enabled = Flag(row, 2);
                jukebox.doubleSided = Flag(row, 3);
                jukebox.changer = Device(row, 4);
                m_jukeboxes.emplace(jukebox.id, m_farm.jukeboxes.size());
                m_farm.jukeboxes.push_back(std::move(jukebox));
            });
    }

    void ReadMagazines() {
        ForEach("SELECT jukebox, slot_count, present FROM magazine ORDER BY jukebox, number",
                [&](sqlite3_stmt* row) {
                    FarmJukebox* jukebox = FindJukebox(Integer(row, 0));
                    if (jukebox == nullptr) return;
                    FarmMagazine magazine;
                    magazine.slotCount = Number(row, 1);
                    magazine.present = Flag(row, 2);
                    jukebox->magazines.push_back(std::move(magazine));
                });
    }

    void ReadDrives() {
        ForEach(
            "SELECT jukebox, enabled, vendor, product, revision, scsi1, scsi2, scsi3, value1, value2 FROM "
            "drive "
            "ORDER BY jukebox, number",
            [&](sqlite3_stmt* row) {
                FarmJukebox* jukebox = FindJukebox(Integer(row, 0));
                if (jukebox == nullptr) return;
                FarmDrive drive;
                drive.enabled = Flag(row, 1);
                drive.device = Device(row, 2);
                drive.values[0] = static_cast<uint64_t>(Integer(row, 8));
                drive.values[1] = static_cast<uint64_t>(Integer(row, 9));
                jukebox->drives.push_back(std::move(drive));
            });
    }

    // The list that a medium belongs to; null when its place is not there.
    std::vector<FarmMedium>* PlaceOf(Place place, int64_t jukebox, int64_t magazine) {
        if (place == Place::Shelf) return &m_farm.shelf;
        if (place == Place::Slot) {
            FarmMagazine* owner = FindMagazine(jukebox, magazine);
            return owner == nullptr ? nullptr : &owner->media;
        }
        FarmJukebox* owner = FindJukebox(jukebox);
        if (owner == nullptr) return nullptr;
        return place == Place::ImportStation ? &owner->waiting : &owner->exported;
    }

    void ReadMedia() {
        int64_t current = 0;
        std::vector<FarmMedium>* list = nullptr;
        ForEach(
            "SELECT d.id, d.type, d.place, d.jukebox, d.magazine, d.slot, i.content, i.finalization, "
            "i.sequential, "
            "i.volume, i.part FROM medium d CROSS JOIN side i ON i.medium = d.id ORDER BY d.place, "
            "d.jukebox, "
            "d.magazine, d.slot, i.side",
            [&](sqlite3_stmt* row) {
                if (Integer(row, 0) != current) {
                    current = Integer(row, 0);
                    list = PlaceOf(static_cast<Place>(Number(row, 2)), Integer(row, 3), Integer(row, 4));
                    if (list != nullptr) {
                        FarmMedium medium;
                        medium.type = static_cast<uint32_t>(Integer(row, 1));
                        medium.slot = Number(row, 5) + 1;
                        list->push_back(std::move(medium));
                    }
                }
                if (list == nullptr) return;
                list->back().sides.push_back({static_cast<Content>(Number(row, 6)),
                                              static_cast<Finalization>(Number(row, 7)), Flag(row, 8),
                                              Number(row, 9), Number(row, 10)});
            });
    }

    // Only the states that the media do not tell.
    void ReadSlots() {
        ForEach(
            "SELECT s.jukebox, s.magazine, s.number, s.state FROM slot s LEFT JOIN medium d ON d.place = 1 "
            "AND "
            "d.jukebox = s.jukebox AND d.magazine = s.magazine AND d.slot = s.number WHERE s.state <> "
            "CASE WHEN d.id IS NULL THEN 3 ELSE 4 END ORDER BY s.jukebox, s.magazine, s.number",
            [&](sqlite3_stmt* row) {
                FarmMagazine* magazine = FindMagazine(Integer(row, 0), Integer(row, 1));
                if (magazine == nullptr) return;
                magazine->oddSlots.push_back({Number(row, 2) + 1, static_cast<SlotState>(Number(row, 3))});
            });
    }

    void ReadVolumes() {
        std::unordered_map<int64_t, size_t> places;
        ForEach(
            "SELECT id, type, state, enabled, file_system, label, total, free, value1, value2 FROM volume "
            "ORDER BY id < 0, abs(id)",
            [&](sqlite3_stmt* row) {
                FarmVolume volume;
                volume.id = Number(row, 0);
                volume.type = static_cast<VolumeType>(Number(row, 1));
                volume.state = Number(row, 2);
                volume.enabled = Flag(row, 3);
                volume.fileSystem = Text(row, 4);
                volume.label = Text(row, 5);
                volume.total = static_cast<uint64_t>(Integer(row, 6));
                volume.free = static_cast<uint64_t>(Integer(row, 7));
                volume.value1 = Number(row, 8);
                volume.value2 = static_cast<uint32_t>(Integer(row, 9));
                places.emplace(volume.id, m_farm.volumes.size());
                m_farm.volumes.push_back(std::move(volume));
            });
        ForEach("SELECT volume, name FROM directory ORDER BY volume, position", [&](sqlite3_stmt* row) {
            const auto owner = places.find(Integer(row, 0));
            if (owner != places.end()) m_farm.volumes[owner->second].directories.push_back(Text(row, 1));
        });
    }

    Database& m_database;
    Farm m_farm;
    std::unordered_map<int64_t, size_t> m_jukeboxes;
};

}  // namespace

Farm ReadFarm(Database& database) {
    database.StartWaiting();
    database.Execute("BEGIN");
    try {
        Farm farm = Reader(database).Read();
        database.Execute("COMMIT");
        return farm;
    } catch (...) {
        sqlite3_exec(database.GetConnection(), "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

}  // namespace embedded
