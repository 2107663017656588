#include "embedded/catalogue/volume_changes.h"

#include <algorithm>

#include "embedded/store/statement.h"

namespace embedded {
namespace {

// CROSS JOIN keeps the order of the tables as written: each is searched by the one before it.
constexpr Sql kReach = R"sql(
    SELECT count(*), coalesce(sum(d.place = 1 AND g.present = 1), 0)
    FROM side i
    CROSS JOIN medium d ON d.id = i.medium
    LEFT JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine
    WHERE i.volume = ?1
)sql";

constexpr Sql kTakeVolumeId = R"sql(
    UPDATE server SET next_volume = next_volume + 1 WHERE id = 1 RETURNING next_volume - 1
)sql";

constexpr Sql kAddVolume = R"sql(
    INSERT INTO volume (id, type, state, enabled, file_system, label, total, free, value1, value2)
    VALUES (?1, 0, 0, 1, ?2, ?3, ?4, ?5, -1, 0)
)sql";
constexpr Sql kSetVolume = R"sql(
    UPDATE volume SET file_system = ?2, label = ?3, total = ?4, free = ?5 WHERE id = ?1
)sql";

constexpr Sql kNumberSides = R"sql(UPDATE side SET volume = ?2 WHERE volume = ?1)sql";
constexpr Sql kNumberVolume = R"sql(UPDATE volume SET id = ?2 WHERE id = ?1)sql";
constexpr Sql kNumberDirectories = R"sql(UPDATE directory SET volume = ?2 WHERE volume = ?1)sql";

constexpr Sql kRemoveVolume = R"sql(DELETE FROM volume WHERE id = ?1)sql";
constexpr Sql kRemoveDirectories = R"sql(DELETE FROM directory WHERE volume = ?1)sql";
constexpr Sql kForgetOddState = R"sql(DELETE FROM odd_state WHERE volume = ?1)sql";

constexpr Sql kSetVolumeState = R"sql(UPDATE volume SET state = ?2 WHERE id = ?1)sql";

// The volumes on a medium, each once.
std::vector<int32_t> VolumesOn(Database& database, const Medium& medium) {
    std::vector<int32_t> volumes;
    for (const Side& side : FindSides(database, medium)) {
        if (side.volume != 0 && std::ranges::find(volumes, side.volume) == volumes.end())
            volumes.push_back(side.volume);
    }
    return volumes;
}

}  // namespace

VolumeReach FindReach(Database& database, int32_t volume) {
    VolumeReach reach;
    Statement row(database, kReach, volume);
    row.Next();
    row >> reach.sides >> reach.reached;
    return reach;
}

int32_t TakeVolumeId(Database& database) {
    Statement row(database, kTakeVolumeId);
    row.Next();
    return row.Read<int32_t>();
}

int32_t AddVolume(Database& database, const SideReading& reading) {
    const int32_t volume = TakeVolumeId(database);
    Run(database, kAddVolume, volume, reading.fileSystem, reading.label, reading.total, reading.free);
    return volume;
}

void SetVolume(Database& database, int32_t volume, const SideReading& reading) {
    Run(database, kSetVolume, volume, reading.fileSystem, reading.label, reading.total, reading.free);
}

void NumberNewVolumes(Database& database, const Medium& medium) {
    for (const int32_t volume : VolumesOn(database, medium)) {
        if (volume > 0) continue;
        const int32_t number = TakeVolumeId(database);
        Run(database, kNumberSides, volume, number);
        Run(database, kNumberVolume, volume, number);
        Run(database, kNumberDirectories, volume, number);
        Run(database, kForgetOddState, volume);
    }
}

void RemoveVolume(Database& database, int32_t volume) {
    Run(database, kRemoveVolume, volume);
    Run(database, kRemoveDirectories, volume);
    Run(database, kForgetOddState, volume);
}

void RefreshVolumeState(Database& database, int32_t volume) {
    const auto found = FindVolume(database, volume);
    if (!found.has_value()) return;
    const VolumeReach reach = FindReach(database, volume);
    Run(database, kSetVolumeState, volume,
        UsualState(found->type, found->isEnabled, reach.sides, reach.reached));
    Run(database, kForgetOddState, volume);
}

void RefreshVolumeStates(Database& database, std::vector<int32_t> volumes) {
    std::ranges::sort(volumes);
    volumes.erase(std::unique(volumes.begin(), volumes.end()), volumes.end());
    for (const int32_t volume : volumes)
        RefreshVolumeState(database, volume);
}

void RefreshVolumesOf(Database& database, const Medium& medium) {
    RefreshVolumeStates(database, VolumesOn(database, medium));
}

}  // namespace embedded
