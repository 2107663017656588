#include "embedded/catalogue/enable_disable_rename.h"

#include "embedded/catalogue/item_texts.h"
#include "embedded/catalogue/items.h"
#include "embedded/catalogue/volume_changes.h"
#include "embedded/model/refusal.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr size_t kMaxJukeboxName = sizeof(JukeboxRecord::name) - 1;
constexpr size_t kMaxDirectory = 1023;

constexpr Sql kSetJukeboxEnabled = R"sql(UPDATE jukebox SET enabled = ?2 WHERE id = ?1)sql";
constexpr Sql kSetJukeboxName = R"sql(UPDATE jukebox SET name = ?2 WHERE id = ?1)sql";

constexpr Sql kSetMagazinePresent = R"sql(
    UPDATE magazine SET present = ?3 WHERE jukebox = ?1 AND number = ?2
)sql";
constexpr Sql kAddToSlotCount = R"sql(UPDATE jukebox SET slot_count = slot_count + ?2 WHERE id = ?1)sql";
constexpr Sql kVolumesInMagazine = R"sql(
    SELECT i.volume FROM medium d CROSS JOIN side i ON i.medium = d.id
    WHERE d.place = 1 AND d.jukebox = ?1 AND d.magazine = ?2 AND i.volume IS NOT NULL
)sql";

constexpr Sql kDriveEnabled = R"sql(SELECT enabled FROM drive WHERE jukebox = ?1 AND number = ?2)sql";
constexpr Sql kSetDriveEnabled = R"sql(
    UPDATE drive SET enabled = ?3 WHERE jukebox = ?1 AND number = ?2
)sql";

constexpr Sql kSetVolumeEnabled = R"sql(UPDATE volume SET enabled = ?2 WHERE id = ?1)sql";

constexpr Sql kFirstDirectory = R"sql(
    SELECT name FROM directory WHERE volume = ?1 ORDER BY position LIMIT 1
)sql";
constexpr Sql kDirectoryOwner = R"sql(SELECT volume FROM directory WHERE name = ?1)sql";
constexpr Sql kSetFirstDirectory = R"sql(
    INSERT INTO directory (volume, position, name) VALUES (?1, 0, ?2)
    ON CONFLICT (volume, position) DO UPDATE SET name = excluded.name
)sql";

// The word that the journal begins a change with.
std::string Verb(Enabled enabled) {
    return enabled == Enabled::Yes ? "enabled: " : "disabled: ";
}

}  // namespace

std::string EnableJukebox(Database& database, const JukeboxKey& key, Enabled enabled) {
    const bool enable = enabled == Enabled::Yes;
    const Jukebox jukebox = FindJukebox(database, key.jukeboxId);
    if (jukebox.isEnabled == enable) return {};
    Run(database, kSetJukeboxEnabled, key.jukeboxId, enable);
    return Verb(enabled) + jukebox.name;
}

std::string EnableMagazine(Database& database, const MagazineKey& key, Enabled enabled) {
    const bool present = enabled == Enabled::Yes;
    const Magazine magazine = FindMagazine(database, key.jukeboxId, key.magazine);
    if (magazine.isPresent == present) return {};
    Run(database, kSetMagazinePresent, key.jukeboxId, key.magazine, present);
    Run(database, kAddToSlotCount, key.jukeboxId, present ? magazine.slotCount : -magazine.slotCount);
    RefreshVolumeStates(database,
                        FindValues<int32_t>(database, kVolumesInMagazine, key.jukeboxId, key.magazine));
    return Verb(enabled) + MagazineText(database, key.jukeboxId, key.magazine);
}

std::string EnableDrive(Database& database, const DriveKey& key, Enabled enabled) {
    const bool enable = enabled == Enabled::Yes;
    const std::string jukebox = FindJukebox(database, key.jukeboxId).name;
    const std::string number = OneBased(key.drive);
    const auto isEnabled = FindValue<bool>(database, kDriveEnabled, key.jukeboxId, key.drive);
    if (!isEnabled.has_value()) throw Refuse(Code::NoDrive, {jukebox, number});
    if (*isEnabled == enable) return {};
    Run(database, kSetDriveEnabled, key.jukeboxId, key.drive, enable);
    return Verb(enabled) + "drive " + number + " of jukebox \"" + jukebox + "\"";
}

std::string EnableVolume(Database& database, uint32_t volume, Enabled enabled) {
    const bool enable = enabled == Enabled::Yes;
    const int32_t id = RequireVolume(database, volume);
    const Volume found = FindVolume(database, id).value_or(Volume{});
    const bool isStateKnown = found.shownState <= static_cast<int32_t>(VolumeState::Offline);
    if (found.isEnabled == enable && isStateKnown) return {};
    Run(database, kSetVolumeEnabled, id, enable);
    RefreshVolumeState(database, id);
    return Verb(enabled) + VolumeText(database, id);
}

std::string RenameJukebox(Database& database, const JukeboxKey& key, const std::string& name) {
    const std::string before = FindJukebox(database, key.jukeboxId).name;
    if (name.empty()) throw Refuse(Code::NameEmpty, {before});
    if (name.size() > kMaxJukeboxName) throw Refuse(Code::NameTooLong, {before, std::to_string(name.size())});
    if (name == before) return {};
    Run(database, kSetJukeboxName, key.jukeboxId, name);
    return "renamed: jukebox \"" + before + "\" to \"" + name + "\"";
}

std::string SetDirectory(Database& database, uint32_t volume, const std::string& name) {
    const int32_t id = RequireVolume(database, volume);
    const std::string number = std::to_string(id);
    if (name.empty()) throw Refuse(Code::DirectoryEmpty, {number});
    if (name.size() > kMaxDirectory)
        throw Refuse(Code::DirectoryTooLong, {number, std::to_string(name.size())});
    if (FindValue<std::string>(database, kFirstDirectory, id) == name) return {};
    const auto owner = FindValue<int64_t>(database, kDirectoryOwner, name);
    if (owner.has_value()) throw Refuse(Code::DirectoryTaken, {name, std::to_string(*owner)});
    Run(database, kSetFirstDirectory, id, name);
    return "directory name: " + VolumeText(database, id) + " is now \"" + name + "\"";
}

}  // namespace embedded
