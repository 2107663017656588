-- The farm of a server "old", as the first version of the tables held it.
PRAGMA application_id = 1263687251;
PRAGMA user_version = 1;
PRAGMA foreign_keys=OFF;
BEGIN TRANSACTION;
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
INSERT INTO server VALUES(1,'old',1,1,10,0,0,0);
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
INSERT INTO jukebox VALUES(3,'My Box',1,0,'','','',0,0,0,0,1,3);
CREATE TABLE magazine (
  jukebox INTEGER NOT NULL,
  number INTEGER NOT NULL,
  slot_count INTEGER NOT NULL,
  first_slot INTEGER NOT NULL,
  present INTEGER NOT NULL CHECK (present IN (0, 1)),
  PRIMARY KEY (jukebox, number)
) STRICT, WITHOUT ROWID;
INSERT INTO magazine VALUES(3,0,3,0,1);
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
INSERT INTO slot VALUES(3,0,0,4);
INSERT INTO slot VALUES(3,0,1,4);
INSERT INTO slot VALUES(3,0,2,3);
CREATE TABLE medium (
  id INTEGER PRIMARY KEY,
  type INTEGER NOT NULL,
  sides INTEGER NOT NULL CHECK (sides IN (1, 2)),
  place INTEGER NOT NULL CHECK (place BETWEEN 1 AND 4),
  jukebox INTEGER NOT NULL,
  magazine INTEGER NOT NULL,
  slot INTEGER NOT NULL
) STRICT;
INSERT INTO medium VALUES(1,12,1,1,3,0,0);
INSERT INTO medium VALUES(2,12,1,1,3,0,1);
INSERT INTO medium VALUES(3,12,1,3,3,0,0);
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
INSERT INTO volume VALUES(7,0,0,1,'UDF 2.01','Sales 2004',4700000000,1175000000,-1,0);
INSERT INTO volume VALUES(8,0,3,1,'','Odd',4700000000,0,-1,0);
INSERT INTO volume VALUES(9,0,2,1,'','Exported',4700000000,0,-1,0);
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
INSERT INTO side VALUES(1,0,6,1,0,7,0);
INSERT INTO side VALUES(2,0,6,1,0,8,0);
INSERT INTO side VALUES(3,0,6,1,0,9,0);
CREATE TABLE directory (
  volume INTEGER NOT NULL,
  position INTEGER NOT NULL,
  name TEXT NOT NULL,
  PRIMARY KEY (volume, position)
) STRICT, WITHOUT ROWID;
INSERT INTO directory VALUES(7,0,'sales\2004');
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
DELETE FROM sqlite_sequence;
CREATE INDEX magazine_first_slot ON magazine (jukebox, first_slot, number);
CREATE INDEX magazine_gap ON magazine (jukebox, number) WHERE present = 0 OR slot_count = 0;
CREATE INDEX slot_empty ON slot (jukebox, magazine, number) WHERE state = 3;
CREATE UNIQUE INDEX medium_place ON medium (place, jukebox, magazine, slot);
CREATE INDEX side_volume ON side (volume, part) WHERE volume IS NOT NULL;
CREATE UNIQUE INDEX directory_name ON directory (name);
CREATE INDEX fault_function ON fault (function, id);
COMMIT;
