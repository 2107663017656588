#include "embedded/store/schema.h"

#include "embedded/store/database.h"

namespace embedded {
namespace {

// All numbers are as the binary interface shows them: magazines, slots, drives and sides from
// zero, codes as in its records. Texts are bytes of no particular encoding.
//
// medium.place: 1 = a slot, 2 = a jukebox's import station, 3 = its export station, 4 = the shelf,
//   outside of every jukebox. In a station, `magazine` is 0 and `slot` the position in the queue;
//   on the shelf, `jukebox` is 0 too. The unique index keeps two media out of one place.
// slot.state: 0 = not read yet, 1 = not present, 2 = its medium cannot be read, 3 = empty, 4 = full.
// side.content: 3 = bad, 4 = blank, 5 = no file system, 6 = file system. A bad side may hold a volume.
// side.part: the order of a volume's sides.
// volume.id: below 0 until the service has seen the volume: it gets its number when its medium is imported.
//   Searches for IDs above 0 skip it.
// volume.state: what is shown: 0 = active, 1 = disabled, 2 = offline, other = unknown. Kept up to
//   date with `enabled` and the places of its media by every change.
// odd_state.state: what is shown of a volume instead, until a change computes its state again.
// magazine.first_slot: the absolute number of its first slot.
// jukebox.slot_count: the slots of its present magazines.
// server.epoch: grows with every start of the service; sessions of an older one are over.
// server.fault_count: the rows of `fault`. server.journal_limit: the rows that `journal` keeps, 0 while
//   it is switched off; journal_start: the last row from before it was switched on.
// fault.function: the name of a function, or "*" for every one. The numbers of its item are null
//   where any will do; `times` null: for ever; `code` null: only a delay (in milliseconds).
// journal.time and duration: microseconds; argument: the text that came with the call.
constexpr const char* kVersion1 = R"sql(
CREATE TABLE server (
  id INTEGER PRIMARY KEY CHECK (id = 1),
  name TEXT NOT NULL,
  running INTEGER NOT NULL CHECK (running IN (0, 1)),
  epoch INTEGER NOT NULL,
  next_volume INTEGER NOT NULL CHECK (next_volume > 0),
  fault_count INTEGER NOT NULL DEFAULT 0,
  journal_limit INTEGER NOT NULL DEFAULT 0,
  journal_start INTEGER NOT NULL DEFAULT 0
) STRICT;

CREATE TABLE jukebox (
  id INTEGER PRIMARY KEY CHECK (id > 0),
  name TEXT NOT NULL,
  enabled INTEGER NOT NULL,
  double_sided INTEGER NOT NULL,
  vendor TEXT NOT NULL, product TEXT NOT NULL, revision TEXT NOT NULL,
  scsi1 INTEGER NOT NULL, scsi2 INTEGER NOT NULL, scsi3 INTEGER NOT NULL,
  drive_count INTEGER NOT NULL,
  magazine_count INTEGER NOT NULL,
  slot_count INTEGER NOT NULL
) STRICT;

CREATE TABLE magazine (
  jukebox INTEGER NOT NULL,
  number INTEGER NOT NULL,
  slot_count INTEGER NOT NULL,
  first_slot INTEGER NOT NULL,
  present INTEGER NOT NULL CHECK (present IN (0, 1)),
  PRIMARY KEY (jukebox, number)
) STRICT, WITHOUT ROWID;
CREATE INDEX magazine_first_slot ON magazine (jukebox, first_slot, number);
CREATE INDEX magazine_gap ON magazine (jukebox, number) WHERE present = 0 OR slot_count = 0;

CREATE TABLE drive (
  jukebox INTEGER NOT NULL,
  number INTEGER NOT NULL,
  enabled INTEGER NOT NULL,
  vendor TEXT NOT NULL, product TEXT NOT NULL, revision TEXT NOT NULL,
  scsi1 INTEGER NOT NULL, scsi2 INTEGER NOT NULL, scsi3 INTEGER NOT NULL,
  value1 INTEGER NOT NULL, value2 INTEGER NOT NULL,
  PRIMARY KEY (jukebox, number)
) STRICT, WITHOUT ROWID;

CREATE TABLE slot (
  jukebox INTEGER NOT NULL,
  magazine INTEGER NOT NULL,
  number INTEGER NOT NULL,
  state INTEGER NOT NULL CHECK (state BETWEEN 0 AND 4),
  PRIMARY KEY (jukebox, magazine, number)
) STRICT, WITHOUT ROWID;
CREATE INDEX slot_empty ON slot (jukebox, magazine, number) WHERE state = 3;

CREATE TABLE medium (
  id INTEGER PRIMARY KEY,
  type INTEGER NOT NULL,
  sides INTEGER NOT NULL CHECK (sides IN (1, 2)),
  place INTEGER NOT NULL CHECK (place BETWEEN 1 AND 4),
  jukebox INTEGER NOT NULL,
  magazine INTEGER NOT NULL,
  slot INTEGER NOT NULL
) STRICT;
CREATE UNIQUE INDEX medium_place ON medium (place, jukebox, magazine, slot);

CREATE TABLE volume (
  id INTEGER PRIMARY KEY CHECK (id <> 0),
  type INTEGER NOT NULL,
  state INTEGER NOT NULL,
  enabled INTEGER NOT NULL CHECK (enabled IN (0, 1)),
  file_system TEXT NOT NULL,
  label TEXT NOT NULL,
  total INTEGER NOT NULL,
  free INTEGER NOT NULL,
  value1 INTEGER NOT NULL,
  value2 INTEGER NOT NULL
) STRICT;

CREATE TABLE side (
  medium INTEGER NOT NULL,
  side INTEGER NOT NULL CHECK (side IN (0, 1)),
  content INTEGER NOT NULL CHECK (content BETWEEN 3 AND 6),
  finalization INTEGER NOT NULL CHECK (finalization BETWEEN 0 AND 3),
  sequential INTEGER NOT NULL CHECK (sequential IN (0, 1)),
  volume INTEGER,
  part INTEGER NOT NULL,
  PRIMARY KEY (medium, side)
) STRICT, WITHOUT ROWID;
CREATE INDEX side_volume ON side (volume, part) WHERE volume IS NOT NULL;

CREATE TABLE directory (
  volume INTEGER NOT NULL,
  position INTEGER NOT NULL,
  name TEXT NOT NULL,
  PRIMARY KEY (volume, position)
) STRICT, WITHOUT ROWID;
CREATE UNIQUE INDEX directory_name ON directory (name);

CREATE TABLE fault (
  id INTEGER PRIMARY KEY,
  function TEXT NOT NULL,
  jukebox INTEGER, magazine INTEGER, slot INTEGER, side INTEGER, drive INTEGER, volume INTEGER,
  skip INTEGER NOT NULL,
  times INTEGER,
  probability REAL NOT NULL,
  seed INTEGER NOT NULL,
  code INTEGER,
  text TEXT NOT NULL,
  delay INTEGER NOT NULL,
  matched INTEGER NOT NULL,
  fired INTEGER NOT NULL
) STRICT;
CREATE INDEX fault_function ON fault (function, id);

CREATE TABLE journal (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  time INTEGER NOT NULL,
  duration INTEGER NOT NULL,
  process INTEGER NOT NULL,
  session INTEGER NOT NULL,
  function TEXT NOT NULL,
  jukebox INTEGER, magazine INTEGER, slot INTEGER, side INTEGER, drive INTEGER, volume INTEGER,
  argument TEXT NOT NULL,
  succeeded INTEGER NOT NULL,
  code INTEGER NOT NULL,
  text TEXT NOT NULL,
  change TEXT NOT NULL
) STRICT;
)sql";

// Version 1 did not tell a state that was asked for from one that went wrong: each is taken for asked for.
constexpr const char* kVersion2 = R"sql(
CREATE TABLE odd_state (
  volume INTEGER PRIMARY KEY,
  state INTEGER NOT NULL
) STRICT;
INSERT INTO odd_state
SELECT v.id, v.state FROM volume v LEFT JOIN (
  SELECT i.volume AS id, count(*) AS total, sum(d.place = 1 AND g.present = 1) AS reached
  FROM side i CROSS JOIN medium d ON d.id = i.medium
  LEFT JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine
  WHERE i.volume IS NOT NULL GROUP BY i.volume) p ON p.id = v.id
WHERE v.state <> CASE WHEN p.reached > 0 AND (p.reached = p.total OR v.type = 1) THEN 1 - v.enabled ELSE 2 END;
)sql";

// journal.medium_type, medium_slot, medium_sides, certified: what the mechanics handled in the call; null for
//   nothing. The code of the medium's type, its slot counted through the jukebox, the sides that a drive
//   worked on (0 = none, 1 = A, 2 = B, 3 = both), whether the format was to check the surface.
// server.real_time: the durations that calls take, a TOML text, or "default"; empty: they take none.
// busy_jukebox.until: when a jukebox is free for the next call that takes its time, in microseconds.
constexpr const char* kVersion3 = R"sql(
ALTER TABLE journal ADD COLUMN medium_type INTEGER;
ALTER TABLE journal ADD COLUMN medium_slot INTEGER;
ALTER TABLE journal ADD COLUMN medium_sides INTEGER;
ALTER TABLE journal ADD COLUMN certified INTEGER;
ALTER TABLE server ADD COLUMN real_time TEXT NOT NULL DEFAULT '';
CREATE TABLE busy_jukebox (
  jukebox INTEGER PRIMARY KEY,
  until INTEGER NOT NULL
) STRICT;
)sql";

// What is known of real jukeboxes. Element addresses are those of the changer, numbers are zero-based.
// server.kind: 0 = simulated, 1 = attached to real jukeboxes. server.generation: of an attached server; grows
//   before and after every move, so that a look at the elements that a move went on beside is found out.
// changer.credentials: a file; empty = none. changer.move_limit: seconds, replaced by time_limit.
// changer.reservation_key: what the processes of this farm reserve the changer with; random, never 0.
// element.kind: 1 = picker, 2 = slot, 3 = mail slot, 4 = drive. magazine and number: of slots; else magazine
//   is 0. reported: whether the changer tells of the element; those of a magazine that was taken out are not.
// known_medium: a medium of a real jukebox. While it is in a drive, `medium` names the slot that it goes home
//   to. tag: the barcode, empty = none; state: of its slot, wherever that is: 0 = not read yet, 2, 4.
// side_identity.uuid: of the file system.
// intent: a move that was begun and whose end is not recorded yet.
constexpr const char* kVersion4 = R"sql(
ALTER TABLE server ADD COLUMN kind INTEGER NOT NULL DEFAULT 0 CHECK (kind IN (0, 1));
ALTER TABLE server ADD COLUMN generation INTEGER NOT NULL DEFAULT 0;

CREATE TABLE changer (
  jukebox INTEGER PRIMARY KEY,
  address TEXT NOT NULL,
  serial TEXT NOT NULL,
  credentials TEXT NOT NULL,
  move_limit INTEGER NOT NULL,
  reservation_key INTEGER NOT NULL
) STRICT;

CREATE TABLE drive_device (
  jukebox INTEGER NOT NULL,
  number INTEGER NOT NULL,
  address TEXT NOT NULL,
  serial TEXT NOT NULL,
  PRIMARY KEY (jukebox, number)
) STRICT, WITHOUT ROWID;

CREATE TABLE element (
  jukebox INTEGER NOT NULL,
  address INTEGER NOT NULL,
  kind INTEGER NOT NULL CHECK (kind BETWEEN 1 AND 4),
  magazine INTEGER NOT NULL,
  number INTEGER NOT NULL,
  reported INTEGER NOT NULL CHECK (reported IN (0, 1)),
  PRIMARY KEY (jukebox, address)
) STRICT, WITHOUT ROWID;
CREATE UNIQUE INDEX element_place ON element (jukebox, kind, magazine, number);

CREATE TABLE known_medium (
  medium INTEGER PRIMARY KEY,
  tag TEXT NOT NULL,
  state INTEGER NOT NULL
) STRICT;
CREATE INDEX known_medium_tag ON known_medium (tag) WHERE tag <> '';

CREATE TABLE side_identity (
  medium INTEGER NOT NULL,
  side INTEGER NOT NULL,
  uuid TEXT NOT NULL,
  PRIMARY KEY (medium, side)
) STRICT, WITHOUT ROWID;
CREATE INDEX side_identity_uuid ON side_identity (uuid);

CREATE TABLE intent (
  jukebox INTEGER PRIMARY KEY,
  medium INTEGER NOT NULL,
  source INTEGER NOT NULL,
  destination INTEGER NOT NULL,
  time INTEGER NOT NULL
) STRICT;
)sql";

// time_limit: those of a real jukebox that are not the default ones; seconds.
constexpr const char* kVersion5 = R"sql(
CREATE TABLE time_limit (
  jukebox INTEGER NOT NULL,
  name TEXT NOT NULL,
  seconds INTEGER NOT NULL CHECK (seconds > 0),
  PRIMARY KEY (jukebox, name)
) STRICT, WITHOUT ROWID;
INSERT INTO time_limit SELECT jukebox, 'move', move_limit FROM changer WHERE move_limit <> 300;
ALTER TABLE changer DROP COLUMN move_limit;
)sql";

struct Step {
    int32_t version;  // that the database has after it
    const char* script;
};

// A later release appends its step and never changes an earlier one.
constexpr Step kSteps[] = {{1, kVersion1}, {2, kVersion2}, {3, kVersion3}, {4, kVersion4}, {5, kVersion5}};

}  // namespace

void Migrate(Database& database, int32_t version) {
    for (const Step& step : kSteps) {
        if (step.version > version) database.Execute(step.script);
    }
    database.Execute("PRAGMA application_id = " + std::to_string(kApplicationId));
    database.Execute("PRAGMA user_version = " + std::to_string(kSchemaVersion));
}

}  // namespace embedded
