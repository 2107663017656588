#include "embedded/store/sql.h"

#include <array>

namespace embedded {
namespace {

// Places of a medium: 1 = slot, 2 = import station, 3 = export station, 4 = shelf (see schema.cpp).
// CROSS JOIN keeps the order of the tables as written: each is searched by the one before it. INDEXED BY
// keeps the search for an empty slot from going through the full ones before it.
constexpr std::array<const char*, kSqlCount> kTexts = {
    "BEGIN",
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",

    "SELECT running, epoch, journal_limit, fault_count FROM server WHERE id = 1",
    "SELECT id FROM jukebox WHERE id > ?1 ORDER BY id LIMIT 1",
    "SELECT id FROM volume WHERE id > ?1 ORDER BY id LIMIT 1",
    "SELECT name, enabled, double_sided, vendor, product, revision, scsi1, scsi2, scsi3,"
    " drive_count, magazine_count, slot_count FROM jukebox WHERE id = ?1",
    "SELECT slot_count, present FROM magazine WHERE jukebox = ?1 AND number = ?2",
    "SELECT enabled, vendor, product, revision, scsi1, scsi2, scsi3, value1, value2"
    " FROM drive WHERE jukebox = ?1 AND number = ?2",
    "SELECT g.present, s.state, d.id, d.type, d.sides"
    " FROM magazine g CROSS JOIN slot s ON s.jukebox = g.jukebox AND s.magazine = g.number"
    " LEFT JOIN medium d ON d.place = 1 AND d.jukebox = s.jukebox AND d.magazine = s.magazine"
    " AND d.slot = s.number"
    " WHERE g.jukebox = ?1 AND g.number = ?2 AND s.number = ?3",
    "SELECT number, first_slot, slot_count FROM magazine WHERE jukebox = ?1 AND first_slot <= ?2"
    " ORDER BY first_slot DESC, number DESC LIMIT 1",
    "SELECT number FROM magazine WHERE jukebox = ?1 AND (present = 0 OR slot_count = 0)"
    " ORDER BY number LIMIT 1",
    "SELECT content, finalization, sequential, volume FROM side WHERE medium = ?1 AND side = ?2",
    "SELECT side, content, finalization, sequential, volume FROM side WHERE medium = ?1 ORDER BY side",
    "SELECT id, type, state, enabled, file_system, label, total, free, value1, value2"
    " FROM volume WHERE id = ?1",
    "SELECT name FROM directory WHERE volume = ?1 ORDER BY position",
    "SELECT volume FROM directory WHERE name = ?1",
    "SELECT d.jukebox, d.magazine, d.slot, i.side"
    " FROM side i CROSS JOIN medium d ON d.id = i.medium"
    " CROSS JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine"
    " WHERE i.volume = ?1 AND d.place = 1 AND g.present = 1 ORDER BY i.part",
    "SELECT count(*), coalesce(sum(d.place = 1 AND g.present = 1), 0)"
    " FROM side i CROSS JOIN medium d ON d.id = i.medium"
    " LEFT JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine"
    " WHERE i.volume = ?1",
    "SELECT i.volume FROM medium d CROSS JOIN side i ON i.medium = d.id"
    " WHERE d.place = 1 AND d.jukebox = ?1 AND d.magazine = ?2 AND i.volume IS NOT NULL",
    "SELECT id, type, state, enabled, file_system, label, total, free, value1, value2"
    " FROM volume WHERE id > ?1 ORDER BY id LIMIT ?2",
    "SELECT volume, name FROM directory WHERE volume BETWEEN ?1 AND ?2 ORDER BY volume, position",
    "SELECT i.volume, d.jukebox, d.magazine, d.slot, i.side, s.state, d.id, d.type, d.sides,"
    " i.content, i.finalization, i.sequential"
    " FROM side i CROSS JOIN medium d ON d.id = i.medium"
    " CROSS JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine"
    " CROSS JOIN slot s ON s.jukebox = d.jukebox AND s.magazine = d.magazine AND s.number = d.slot"
    " WHERE i.volume BETWEEN ?1 AND ?2 AND i.volume IS NOT NULL AND d.place = 1 AND g.present = 1"
    " ORDER BY i.volume, i.part",
    "SELECT id, jukebox, magazine, slot, side, drive, volume, skip, times, probability, seed, code, text,"
    " delay, matched, fired FROM fault WHERE function IN (?1, '*')",
    "SELECT id FROM medium WHERE place = 2 AND jukebox = ?1 AND magazine = 0 ORDER BY slot LIMIT 1",
    "SELECT slot FROM medium WHERE place = ?1 AND jukebox = ?2 AND magazine = 0 ORDER BY slot DESC LIMIT 1",
    "SELECT s.magazine, s.number, g.present FROM slot s INDEXED BY slot_empty CROSS JOIN magazine g"
    " ON g.jukebox = s.jukebox AND g.number = s.magazine"
    " WHERE s.jukebox = ?1 AND s.magazine >= ?2 AND s.state = 3 ORDER BY s.magazine, s.number LIMIT 1",
    "SELECT s.magazine, s.number FROM slot s INDEXED BY slot_empty"
    " WHERE s.jukebox = ?1 AND s.magazine = ?2 AND s.state = 3 ORDER BY s.number LIMIT 1",
    "SELECT d.magazine, d.slot, g.present FROM medium d CROSS JOIN magazine g"
    " ON g.jukebox = d.jukebox AND g.number = d.magazine"
    " WHERE d.place = 1 AND d.jukebox = ?1 AND d.magazine >= ?2 ORDER BY d.magazine, d.slot LIMIT 1",
    "SELECT d.magazine, d.slot FROM medium d"
    " WHERE d.place = 1 AND d.jukebox = ?1 AND d.magazine = ?2 ORDER BY d.slot LIMIT 1",

    "UPDATE medium SET place = ?2, jukebox = ?3, magazine = ?4, slot = ?5 WHERE id = ?1",
    "UPDATE slot SET state = ?4 WHERE jukebox = ?1 AND magazine = ?2 AND number = ?3",
    "UPDATE side SET content = ?3, finalization = ?4, sequential = ?5, volume = nullif(?6, 0)"
    " WHERE medium = ?1 AND side = ?2",
    "UPDATE side SET finalization = ?3 WHERE medium = ?1 AND side = ?2",
    "UPDATE side SET volume = ?2 WHERE volume = ?1",
    "UPDATE volume SET id = ?2 WHERE id = ?1",
    "UPDATE directory SET volume = ?2 WHERE volume = ?1",
    "UPDATE server SET next_volume = next_volume + 1 WHERE id = 1 RETURNING next_volume - 1",
    "INSERT INTO volume (id, type, state, enabled, file_system, label, total, free, value1, value2)"
    " VALUES (?1, 0, 0, 1, ?2, ?3, ?4, ?5, -1, 0)",
    "UPDATE volume SET file_system = ?2, label = ?3, total = ?4, free = ?5 WHERE id = ?1",
    "UPDATE volume SET state = ?2 WHERE id = ?1",
    "DELETE FROM odd_state WHERE volume = ?1",
    "UPDATE volume SET enabled = ?2 WHERE id = ?1",
    "DELETE FROM volume WHERE id = ?1",
    "DELETE FROM directory WHERE volume = ?1",
    "INSERT INTO directory (volume, position, name) VALUES (?1, 0, ?2)"
    " ON CONFLICT (volume, position) DO UPDATE SET name = excluded.name",
    "UPDATE jukebox SET enabled = ?2 WHERE id = ?1",
    "UPDATE jukebox SET name = ?2 WHERE id = ?1",
    "UPDATE magazine SET present = ?3 WHERE jukebox = ?1 AND number = ?2",
    "UPDATE jukebox SET slot_count = slot_count + ?2 WHERE id = ?1",
    "UPDATE drive SET enabled = ?3 WHERE jukebox = ?1 AND number = ?2",
    "UPDATE server SET running = ?1, epoch = epoch + ?2 WHERE id = 1",
    "UPDATE fault SET matched = ?2, fired = ?3 WHERE id = ?1",
    "INSERT INTO journal (time, duration, process, session, function, jukebox, magazine, slot, side, drive,"
    " volume, argument, succeeded, code, text, change)"
    " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16) RETURNING id",
    "DELETE FROM journal WHERE id <= ?1",
};

}  // namespace

std::span<const char* const> SqlTexts() {
    return kTexts;
}

}  // namespace embedded
