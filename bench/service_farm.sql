-- Makes a farm of the embedded service one of :count volumes: ten jukeboxes of ten magazines, every slot
-- full, one volume on side A of each disc. The same farm as the library of no cost generates.
DELETE FROM directory; DELETE FROM side; DELETE FROM volume; DELETE FROM medium; DELETE FROM slot;
DELETE FROM drive; DELETE FROM magazine; DELETE FROM jukebox;
UPDATE server SET next_volume = :count + 1;

CREATE TEMP TABLE place AS
WITH RECURSIVE number (n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM number WHERE n + 1 < :count)
SELECT n + 1 AS id, n / (:count / 10) + 1 AS jukebox, n % (:count / 10) / (:count / 100) AS magazine,
       n % (:count / 100) AS slot
FROM number;

INSERT INTO jukebox
SELECT DISTINCT jukebox, 'Tower' || jukebox, 1, 0, 'OSTREL', 'Changer', '1.00', 0, jukebox, 0, 0, 10, :count / 10
FROM place;
INSERT INTO magazine
SELECT DISTINCT jukebox, magazine, :count / 100, magazine * (:count / 100), 1 FROM place;
INSERT INTO slot SELECT jukebox, magazine, slot, 4 FROM place;
INSERT INTO medium SELECT id, 5, 1, 1, jukebox, magazine, slot FROM place;
INSERT INTO volume
SELECT id, 0, 0, 1, 'UDF', 'Label-' || (id * 7919 % :count), 4700372992, 47003729 * (id % 101), 0, 0 FROM place;
INSERT INTO side SELECT id, 0, 6, 1, 0, id, 0 FROM place;
INSERT INTO directory SELECT id, 0, 'archive\volume' || id FROM place;
DROP TABLE place;
