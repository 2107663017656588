#include "embedded/farms/farm_reader.h"

#include <unordered_map>

#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kReadServer = R"sql(SELECT running, next_volume FROM server)sql";

constexpr Sql kJukeboxes = R"sql(
    SELECT id, name, enabled, double_sided, vendor, product, revision, scsi1, scsi2, scsi3
    FROM jukebox ORDER BY id
)sql";

constexpr Sql kMagazines = R"sql(
    SELECT jukebox, slot_count, present FROM magazine ORDER BY jukebox, number
)sql";

constexpr Sql kDrives = R"sql(
    SELECT jukebox, enabled, vendor, product, revision, scsi1, scsi2, scsi3, value1, value2
    FROM drive ORDER BY jukebox, number
)sql";

// One row for each side of a medium.
constexpr Sql kMedia = R"sql(
    SELECT d.id, d.type, d.place, d.jukebox, d.magazine, d.slot,
        i.content, i.finalization, i.sequential, i.volume, i.part
    FROM medium d CROSS JOIN side i ON i.medium = d.id
    ORDER BY d.place, d.jukebox, d.magazine, d.slot, i.side
)sql";

// Only the slots whose state differs from what the media say.
constexpr Sql kOddSlots = R"sql(
    SELECT s.jukebox, s.magazine, s.number, s.state
    FROM slot s
    LEFT JOIN medium d ON d.place = 1 AND d.jukebox = s.jukebox AND d.magazine = s.magazine AND d.slot = s.number
    WHERE s.state <> CASE WHEN d.id IS NULL THEN 3 ELSE 4 END
    ORDER BY s.jukebox, s.magazine, s.number
)sql";

constexpr Sql kVolumes = R"sql(
    SELECT id, type, state, enabled, file_system, label, total, free, value1, value2
    FROM volume ORDER BY id < 0, abs(id)
)sql";

constexpr Sql kDirectories = R"sql(SELECT volume, name FROM directory ORDER BY volume, position)sql";

FarmDevice ReadDevice(Statement& row) {
    FarmDevice device;
    row >> device.vendor >> device.product >> device.revision;
    row >> device.scsi[0] >> device.scsi[1] >> device.scsi[2];
    return device;
}

FarmSide ReadSide(Statement& row) {
    FarmSide side;
    row >> side.content >> side.finalization >> side.sequential >> side.volume >> side.part;
    return side;
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
    // Null for a row whose jukebox or magazine does not exist; `krvsim check` reports such rows.
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
        Statement row(m_database, kReadServer);
        while (row.Next())
            row >> m_farm.running >> m_farm.nextVolume;
    }

    void ReadJukeboxes() {
        Statement row(m_database, kJukeboxes);
        while (row.Next()) {
            FarmJukebox jukebox;
            row >> jukebox.id >> jukebox.name >> jukebox.enabled >> jukebox.doubleSided;
            jukebox.changer = ReadDevice(row);
            m_jukeboxes.emplace(jukebox.id, m_farm.jukeboxes.size());
            m_farm.jukeboxes.push_back(std::move(jukebox));
        }
    }

    void ReadMagazines() {
        Statement row(m_database, kMagazines);
        while (row.Next()) {
            FarmJukebox* jukebox = FindJukebox(row.Read<int64_t>());
            if (jukebox == nullptr) continue;
            FarmMagazine& magazine = jukebox->magazines.emplace_back();
            row >> magazine.slotCount >> magazine.present;
        }
    }

    void ReadDrives() {
        Statement row(m_database, kDrives);
        while (row.Next()) {
            FarmJukebox* jukebox = FindJukebox(row.Read<int64_t>());
            if (jukebox == nullptr) continue;
            FarmDrive& drive = jukebox->drives.emplace_back();
            row >> drive.enabled;
            drive.device = ReadDevice(row);
            row >> drive.values[0] >> drive.values[1];
        }
    }

    // The list that a medium belongs to; null when its place does not exist.
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
        Statement row(m_database, kMedia);
        while (row.Next()) {
            const auto [id, type, place, jukebox, magazine, slot] =
                row.Read<int64_t, uint32_t, Place, int64_t, int64_t, int32_t>();
            if (id != current) {
                current = id;
                list = PlaceOf(place, jukebox, magazine);
                if (list != nullptr) {
                    FarmMedium& medium = list->emplace_back();
                    medium.id = id;
                    medium.type = type;
                    medium.slot = slot + 1;
                }
            }
            if (list != nullptr) list->back().sides.push_back(ReadSide(row));
        }
    }

    void ReadSlots() {
        Statement row(m_database, kOddSlots);
        while (row.Next()) {
            const auto [jukebox, number, slot, state] = row.Read<int64_t, int64_t, int32_t, SlotState>();
            FarmMagazine* magazine = FindMagazine(jukebox, number);
            if (magazine != nullptr) magazine->oddSlots.push_back({slot + 1, state});
        }
    }

    void ReadVolumes() {
        std::unordered_map<int64_t, size_t> places;
        Statement row(m_database, kVolumes);
        while (row.Next()) {
            FarmVolume volume;
            row >> volume.id >> volume.type >> volume.state >> volume.enabled;
            row >> volume.fileSystem >> volume.label >> volume.total >> volume.free;
            row >> volume.value1 >> volume.value2;
            places.emplace(volume.id, m_farm.volumes.size());
            m_farm.volumes.push_back(std::move(volume));
        }
        Statement names(m_database, kDirectories);
        while (names.Next()) {
            const auto owner = places.find(names.Read<int64_t>());
            if (owner != places.end())
                m_farm.volumes[owner->second].directories.push_back(names.Read<std::string>());
        }
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
        RollBackOpenTransaction(database);
        throw;
    }
}

}  // namespace embedded
