#include "embedded/catalogue/attachment.h"

#include "embedded/catalogue/items.h"
#include "embedded/catalogue/volume_changes.h"
#include "embedded/model/refusal.h"
#include "embedded/store/statement.h"

namespace embedded {
namespace {

constexpr Sql kMarkAttached = R"sql(UPDATE server SET kind = 1 WHERE id = 1)sql";
constexpr Sql kAddChanger = R"sql(
    INSERT INTO changer (jukebox, address, serial, credentials, reservation_key)
    VALUES (?1, ?2, ?3, ?4, ?5)
)sql";
constexpr Sql kAddDrive = R"sql(
    INSERT INTO drive_device (jukebox, number, address, serial) VALUES (?1, ?2, ?3, ?4)
)sql";
constexpr Sql kAddElement = R"sql(
    INSERT INTO element (jukebox, address, kind, magazine, number, reported) VALUES (?1, ?2, ?3, ?4, ?5, 1)
)sql";

constexpr Sql kAddress = R"sql(
    SELECT j.name, c.address, c.serial, c.credentials, c.reservation_key
    FROM changer c CROSS JOIN jukebox j ON j.id = c.jukebox WHERE c.jukebox = ?1
)sql";
constexpr Sql kDriveAddresses = R"sql(
    SELECT address, serial FROM drive_device WHERE jukebox = ?1 ORDER BY number
)sql";

constexpr Sql kLimits = R"sql(SELECT name, seconds FROM time_limit WHERE jukebox = ?1)sql";
constexpr Sql kAddLimit = R"sql(INSERT INTO time_limit (jukebox, name, seconds) VALUES (?1, ?2, ?3))sql";
constexpr Sql kRemoveLimits = R"sql(DELETE FROM time_limit WHERE jukebox = ?1)sql";

constexpr Sql kMediaOfJukebox = R"sql(SELECT id FROM medium WHERE place IN (1, 2, 3) AND jukebox = ?1)sql";

void AddElements(Database& database, int32_t jukebox, ElementKind kind, int32_t magazine,
                 const std::vector<uint16_t>& addresses) {
    int32_t number = 0;
    for (const uint16_t address : addresses)
        Run(database, kAddElement, jukebox, address, kind, magazine, number++);
}

}  // namespace

void RecordAttachment(Database& database, int32_t jukebox, const JukeboxAddress& address,
                      const ElementMap& elements) {
    Run(database, kMarkAttached);
    Run(database, kAddChanger, jukebox, address.changer.address, address.changer.serialNumber,
        address.credentials, address.reservationKey);
    RecordTimeLimits(database, jukebox, address.limits);
    int32_t number = 0;
    for (const DeviceAddress& drive : address.drives)
        Run(database, kAddDrive, jukebox, number++, drive.address, drive.serialNumber);
    AddElements(database, jukebox, ElementKind::Picker, 0, elements.pickers);
    AddElements(database, jukebox, ElementKind::MailSlot, 0, elements.mailSlots);
    AddElements(database, jukebox, ElementKind::Drive, 0, elements.drives);
    int32_t magazine = 0;
    for (const auto& slots : elements.magazines)
        AddElements(database, jukebox, ElementKind::Slot, magazine++, slots);
}

void RemoveAttachedJukebox(Database& database, int32_t jukebox) {
    const auto media = FindValues<int64_t>(database, kMediaOfJukebox, jukebox);
    for (const int64_t medium : media)
        SetMediumPlace(database, medium, Place::Shelf, {0, 0, EndOfShelf(database)});
    for (const int64_t medium : media)
        RefreshVolumesOf(database, {medium, 0});
    Run(database, R"sql(DELETE FROM intent WHERE jukebox = ?1)sql", jukebox);
    Run(database, R"sql(DELETE FROM element WHERE jukebox = ?1)sql", jukebox);
    Run(database, R"sql(DELETE FROM drive_device WHERE jukebox = ?1)sql", jukebox);
    Run(database, kRemoveLimits, jukebox);
    Run(database, R"sql(DELETE FROM changer WHERE jukebox = ?1)sql", jukebox);
    Run(database, R"sql(DELETE FROM slot WHERE jukebox = ?1)sql", jukebox);
    Run(database, R"sql(DELETE FROM drive WHERE jukebox = ?1)sql", jukebox);
    Run(database, R"sql(DELETE FROM magazine WHERE jukebox = ?1)sql", jukebox);
    Run(database, R"sql(DELETE FROM jukebox WHERE id = ?1)sql", jukebox);
    Run(database, R"sql(UPDATE server SET generation = generation + 1 WHERE id = 1)sql");
}

JukeboxAddress ReadJukeboxAddress(Database& database, int32_t jukebox) {
    JukeboxAddress address;
    Statement row(database, kAddress, jukebox);
    if (!row.Next()) throw Refuse(Code::NoJukebox, {std::to_string(jukebox)});
    row >> address.name >> address.changer.address >> address.changer.serialNumber >> address.credentials;
    row >> address.reservationKey;
    address.limits = ReadTimeLimits(database, jukebox);
    Statement drive(database, kDriveAddresses, jukebox);
    while (drive.Next()) {
        DeviceAddress& device = address.drives.emplace_back();
        drive >> device.address >> device.serialNumber;
    }
    return address;
}

TimeLimits ReadTimeLimits(Database& database, int32_t jukebox) {
    TimeLimits limits;
    Statement row(database, kLimits, jukebox);
    while (row.Next()) {
        const auto [name, seconds] = row.Read<std::string, int64_t>();
        for (const TimeLimitInfo& info : AllTimeLimits()) {
            if (name == info.name) limits.*info.limit = TimeLimits::Seconds(seconds);
        }
    }
    return limits;
}

void RecordTimeLimits(Database& database, int32_t jukebox, const TimeLimits& limits) {
    constexpr TimeLimits kDefaults;
    Run(database, kRemoveLimits, jukebox);
    for (const TimeLimitInfo& info : AllTimeLimits()) {
        if (limits.*info.limit != kDefaults.*info.limit)
            Run(database, kAddLimit, jukebox, info.name, (limits.*info.limit).count());
    }
}

}  // namespace embedded
