SELECT volume.id AS "Vol ID",
       jukebox.name || '\' || (medium.magazine + 1) || '\' || (medium.slot + 1) || '.' || char(65 + side.side) AS "Location",
       CASE volume.state WHEN 0 THEN 'active' WHEN 1 THEN 'disabled' WHEN 2 THEN 'offline' ELSE 'unknown' END AS "Status",
       CASE medium.type WHEN 5 THEN 'DVD-R' ELSE 'other' END AS "Type",
       directory.name AS "Directory",
       volume.file_system AS "File System",
       (volume.total - volume.free) * 100 / volume.total || '%' AS "Used Capa",
       printf('%.2f GByte', volume.total / 1073741824.0) AS "Total Capa",
       volume.label AS "Label",
       CASE volume.type WHEN 0 THEN 'Disc' WHEN 1 THEN 'Mirror' ELSE 'Volume Set' END AS "Volume Type"
FROM volume
JOIN side ON side.volume = volume.id
JOIN medium ON medium.id = side.medium
JOIN jukebox ON jukebox.id = medium.jukebox
LEFT JOIN directory ON directory.volume = volume.id AND directory.position = 0
ORDER BY CAST(substr(volume.label, 7) AS INTEGER);
