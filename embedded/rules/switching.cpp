#include "embedded/rules/switching.h"

#include <vector>

#include "embedded/model/refusal.h"
#include "embedded/rules/changes.h"
#include "embedded/store/rows.h"

namespace embedded {
namespace {

constexpr size_t kMaxJukeboxName = 51;
constexpr size_t kMaxDirectory = 1023;

const char* Word(Switch to) {
    return to == Switch::On ? "enabled: " : "disabled: ";
}

std::string VolumeText(Database& database, int32_t volume) {
    Rows rows(database, Sql::Volume, volume);
    if (!rows.Next() || rows.Text(5).empty()) return "volume " + std::to_string(volume);
    return "volume " + std::to_string(volume) + " (" + std::string(rows.Text(5)) + ")";
}

// A number above those of volumes is one that no volume has.
int32_t VolumeNumber(Database& database, uint32_t volume) {
    if (volume > INT32_MAX) throw Refuse(Code::NoVolume, {std::to_string(volume)});
    RequireVolume(database, static_cast<int32_t>(volume));
    return static_cast<int32_t>(volume);
}

std::vector<int32_t> VolumesInMagazine(Database& database, const MagazineKey& key) {
    std::vector<int32_t> volumes;
    Rows rows(database, Sql::VolumesInMagazine, key.jukeboxId, key.magazine);
    while (rows.Next())
        volumes.push_back(rows.Number(0));
    return volumes;
}

bool IsRunning(Database& database) {
    Rows rows(database, Sql::ServerState);
    return rows.Next() && rows.Flag(0);
}

// Each start is a new epoch; sessions of an older one are over.
void SetRunning(Database& database, Switch to) {
    Run(database, Sql::SetRunning, to == Switch::On, to == Switch::On ? 1 : 0);
}

}  // namespace

std::string SwitchJukebox(Database& database, const JukeboxKey& key, Switch to) {
    const bool enable = to == Switch::On;
    std::string change;
    {
        Rows rows(database, Sql::Jukebox, key.jukeboxId);
        if (!rows.Next()) throw Refuse(Code::NoJukebox, {std::to_string(key.jukeboxId)});
        if (rows.Flag(1) == enable) return {};
        change = Word(to) + std::string(rows.Text(0));
    }
    Run(database, Sql::SetJukeboxEnabled, key.jukeboxId, enable);
    return change;
}

std::string SwitchMagazine(Database& database, const MagazineKey& key, Switch to) {
    const bool present = to == Switch::On;
    RequireMagazine(database, key.jukeboxId, key.magazine);
    int64_t slots = 0;
    {
        Rows rows(database, Sql::Magazine, key.jukeboxId, key.magazine);
        rows.Next();
        if (rows.Flag(1) == present) return {};
        slots = rows.Integer(0);
    }
    Run(database, Sql::SetMagazinePresent, key.jukeboxId, key.magazine, present);
    Run(database, Sql::AddToSlotCount, key.jukeboxId, present ? slots : -slots);
    for (const int32_t volume : VolumesInMagazine(database, key))
        RefreshVolumeState(database, volume);
    return Word(to) + MagazineText(database, key.jukeboxId, key.magazine);
}

std::string SwitchDrive(Database& database, const DriveKey& key, Switch to) {
    const bool enable = to == Switch::On;
    const std::string jukebox = JukeboxName(database, key.jukeboxId);
    const std::string number = std::to_string(int64_t{key.drive} + 1);
    {
        Rows rows(database, Sql::Drive, key.jukeboxId, key.drive);
        if (!rows.Next()) throw Refuse(Code::NoDrive, {jukebox, number});
        if (rows.Flag(0) == enable) return {};
    }
    Run(database, Sql::SetDriveEnabled, key.jukeboxId, key.drive, enable);
    return Word(to) + std::string("drive ") + number + " of jukebox \"" + jukebox + "\"";
}

std::string SwitchVolume(Database& database, uint32_t volume, Switch to) {
    const bool enable = to == Switch::On;
    const int32_t id = VolumeNumber(database, volume);
    {
        Rows rows(database, Sql::Volume, id);
        rows.Next();
        const bool isShownSo = rows.Number(2) <= static_cast<int32_t>(VolumeState::Offline);
        if (rows.Flag(3) == enable && isShownSo) return {};
    }
    Run(database, Sql::SetVolumeEnabled, id, enable);
    RefreshVolumeState(database, id);
    return Word(to) + VolumeText(database, id);
}

std::string RenameJukebox(Database& database, const JukeboxKey& key, const std::string& name) {
    const std::string before = JukeboxName(database, key.jukeboxId);
    if (name.empty()) throw Refuse(Code::NameEmpty, {before});
    if (name.size() > kMaxJukeboxName) throw Refuse(Code::NameTooLong, {before, std::to_string(name.size())});
    if (name == before) return {};
    Run(database, Sql::SetJukeboxName, key.jukeboxId, name);
    return "renamed: jukebox \"" + before + "\" to \"" + name + "\"";
}

std::string SetDirectory(Database& database, uint32_t volume, const std::string& name) {
    const int32_t id = VolumeNumber(database, volume);
    const std::string number = std::to_string(id);
    if (name.empty()) throw Refuse(Code::DirectoryEmpty, {number});
    if (name.size() > kMaxDirectory)
        throw Refuse(Code::DirectoryTooLong, {number, std::to_string(name.size())});
    {
        Rows first(database, Sql::Directories, id);
        if (first.Next() && first.Text(0) == name) return {};
        Rows owner(database, Sql::DirectoryOwner, name);
        if (owner.Next()) throw Refuse(Code::DirectoryTaken, {name, std::to_string(owner.Integer(0))});
    }
    Run(database, Sql::SetDirectory, id, name);
    return "directory name: " + VolumeText(database, id) + " is now \"" + name + "\"";
}

std::string StartService(Database& database) {
    if (IsRunning(database)) return {};
    SetRunning(database, Switch::On);
    return "service started";
}

std::string StopService(Database& database) {
    if (!IsRunning(database)) return {};
    SetRunning(database, Switch::Off);
    return "service stopped";
}

std::string RestartService(Database& database) {
    SetRunning(database, Switch::On);
    return "service restarted";
}

}  // namespace embedded
