#include "embedded/farms/servers.h"
#include "embedded/journal/journal.h"
#include "embedded/platform/platform.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/places.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

struct CheckOptions {
    std::string server = ".";
};

// The rules of a sound farm: each statement yields a sentence for every item that breaks its rule.
constexpr Sql kRules[] = {
    // ---- The file
    R"(SELECT 'the ' || type || ' "' || name || '" does not belong to a farm'
       FROM sqlite_master WHERE type IN ('trigger', 'view'))",

    // ---- The server
    R"(SELECT 'the server has ' || count(*) || ' descriptions instead of one' FROM server HAVING count(*) <> 1)",
    R"(SELECT 'the server records ' || s.fault_count || ' faults but has ' || count(f.id)
       FROM server s LEFT JOIN fault f GROUP BY s.id HAVING count(f.id) <> s.fault_count)",
    R"(SELECT 'the journal limit is ' || journal_limit FROM server WHERE journal_limit < 0)",
    R"(SELECT 'fault ' || id || ' has the probability ' || probability || '; the range is 0 to 1'
       FROM fault WHERE probability NOT BETWEEN 0 AND 1)",
    R"(SELECT 'fault ' || id || ' has the code ' || code || '; the range is 0 to 2147483647'
       FROM fault WHERE code NOT BETWEEN 0 AND 2147483647)",
    R"(SELECT 'fault ' || id || ' has neither a code nor a delay' FROM fault WHERE code IS NULL AND delay <= 0)",

    // ---- Jukeboxes
    R"(SELECT 'jukebox ' || id || ' has an empty name' FROM jukebox WHERE length(name) = 0)",
    R"(SELECT 'the name of jukebox ' || id || ' is longer than 51 bytes'
       FROM jukebox WHERE length(CAST(name AS BLOB)) > 51)",
    R"(SELECT 'the vendor, product or revision of jukebox ' || id || ' is too long' FROM jukebox
       WHERE length(CAST(vendor AS BLOB)) > 8 OR length(CAST(product AS BLOB)) > 16
          OR length(CAST(revision AS BLOB)) > 4)",
    R"(SELECT 'jukebox ' || j.id || ' records ' || j.drive_count || ' drives but has ' || count(d.number)
       FROM jukebox j LEFT JOIN drive d ON d.jukebox = j.id
       GROUP BY j.id HAVING count(d.number) <> j.drive_count)",
    R"(SELECT 'jukebox ' || j.id || ' records ' || j.magazine_count || ' magazines but has ' || count(g.number)
       FROM jukebox j LEFT JOIN magazine g ON g.jukebox = j.id
       GROUP BY j.id HAVING count(g.number) <> j.magazine_count)",
    R"(SELECT 'jukebox ' || j.id || ' records ' || j.slot_count || ' slots but its present magazines have '
              || total(g.slot_count * g.present)
       FROM jukebox j LEFT JOIN magazine g ON g.jukebox = j.id
       GROUP BY j.id HAVING total(g.slot_count * g.present) <> j.slot_count)",

    // ---- Drives and magazines
    R"(SELECT 'the drive numbers of jukebox ' || jukebox || ' have gaps' FROM drive
       GROUP BY jukebox HAVING min(number) <> 0 OR max(number) <> count(*) - 1)",
    R"(SELECT 'drive ' || (d.number + 1) || ' belongs to jukebox ' || d.jukebox || ', which does not exist'
       FROM drive d LEFT JOIN jukebox j ON j.id = d.jukebox WHERE j.id IS NULL)",
    R"(SELECT 'the vendor, product or revision of drive ' || (number + 1) || ' of jukebox ' || jukebox
              || ' is too long'
       FROM drive WHERE length(CAST(vendor AS BLOB)) > 8 OR length(CAST(product AS BLOB)) > 16
                     OR length(CAST(revision AS BLOB)) > 4)",
    R"(SELECT 'the magazine numbers of jukebox ' || jukebox || ' have gaps' FROM magazine
       GROUP BY jukebox HAVING min(number) <> 0 OR max(number) <> count(*) - 1)",
    R"(SELECT 'magazine ' || (g.number + 1) || ' belongs to jukebox ' || g.jukebox || ', which does not exist'
       FROM magazine g LEFT JOIN jukebox j ON j.id = g.jukebox WHERE j.id IS NULL)",
    R"(SELECT 'magazine ' || (g.number + 1) || ' of jukebox ' || g.jukebox || ' starts ' || g.first_slot
              || ' slots after the first one instead of ' || g.expected
       FROM (SELECT jukebox, number, first_slot,
                    coalesce(sum(slot_count) OVER (PARTITION BY jukebox ORDER BY number
                                                   ROWS BETWEEN UNBOUNDED PRECEDING AND 1 PRECEDING), 0) AS expected
             FROM magazine) g
       WHERE g.first_slot <> g.expected)",
    R"(SELECT 'magazine ' || (g.number + 1) || ' of jukebox ' || g.jukebox || ' records ' || g.slot_count
              || ' slots but has ' || count(s.number)
       FROM magazine g LEFT JOIN slot s ON s.jukebox = g.jukebox AND s.magazine = g.number
       GROUP BY g.jukebox, g.number
       HAVING count(s.number) <> g.slot_count OR coalesce(max(s.number), -1) <> g.slot_count - 1)",

    // ---- Slots
    R"(SELECT 'slot ' || (s.number + 1) || ' belongs to magazine ' || (s.magazine + 1) || ' of jukebox '
              || s.jukebox || ', which does not exist'
       FROM slot s LEFT JOIN magazine g ON g.jukebox = s.jukebox AND g.number = s.magazine
       WHERE g.number IS NULL)",
    R"(SELECT 'slot ' || (s.number + 1) || ' of magazine ' || (s.magazine + 1) || ' of jukebox ' || s.jukebox
              || ' is ' || CASE s.state WHEN 4 THEN 'full but holds no medium'
                                        WHEN 3 THEN 'empty but holds a medium'
                                        ELSE 'not present but holds a medium' END
       FROM slot s LEFT JOIN medium d ON d.place = 1 AND d.jukebox = s.jukebox AND d.magazine = s.magazine
                                     AND d.slot = s.number
       WHERE (s.state = 4 AND d.id IS NULL) OR (s.state IN (1, 3) AND d.id IS NOT NULL))",

    // ---- Media
    R"(SELECT 'medium ' || d.id || ' is in slot ' || (d.slot + 1) || ' of magazine ' || (d.magazine + 1)
              || ' of jukebox ' || d.jukebox || ', which does not exist'
       FROM medium d LEFT JOIN slot s ON s.jukebox = d.jukebox AND s.magazine = d.magazine AND s.number = d.slot
       WHERE d.place = 1 AND s.number IS NULL)",
    R"(SELECT 'medium ' || d.id || ' is in a station of jukebox ' || d.jukebox || ', which does not exist'
       FROM medium d LEFT JOIN jukebox j ON j.id = d.jukebox WHERE d.place IN (2, 3) AND j.id IS NULL)",
    R"(SELECT 'medium ' || id || ' is on the shelf but names jukebox ' || jukebox
       FROM medium WHERE place = 4 AND (jukebox <> 0 OR magazine <> 0))",
    R"(SELECT 'medium ' || id || ' is in a station of jukebox ' || jukebox || ' but names magazine '
              || (magazine + 1)
       FROM medium WHERE place IN (2, 3) AND magazine <> 0)",
    R"(SELECT 'media ' || min(id) || ' and ' || max(id) || ' are in the same place'
       FROM medium GROUP BY place, jukebox, magazine, slot HAVING count(*) > 1)",
    R"(SELECT 'medium ' || id || ' has the type ' || type || '; the range is 0 to 254'
       FROM medium WHERE type NOT BETWEEN 0 AND 254)",
    R"(SELECT 'medium ' || d.id || ' records ' || d.sides || ' sides but has ' || count(i.side)
       FROM medium d LEFT JOIN side i ON i.medium = d.id GROUP BY d.id HAVING count(i.side) <> d.sides)",
    R"(SELECT 'medium ' || d.id || ' has a side ' || char(65 + max(i.side)) || ' but only ' || d.sides || ' side'
       FROM medium d JOIN side i ON i.medium = d.id GROUP BY d.id HAVING max(i.side) >= d.sides)",
    R"(SELECT 'side ' || char(65 + i.side) || ' belongs to medium ' || i.medium || ', which does not exist'
       FROM side i LEFT JOIN medium d ON d.id = i.medium WHERE d.id IS NULL)",
    R"(SELECT 'medium ' || i.medium || ' holds volume ' || i.volume || ', which does not exist'
       FROM side i LEFT JOIN volume v ON v.id = i.volume WHERE i.volume IS NOT NULL AND v.id IS NULL)",

    // ---- Volumes
    R"(SELECT 'volume ' || id || ' has the type ' || type || '; the range is 0 to 2'
       FROM volume WHERE type NOT BETWEEN 0 AND 2)",
    R"(SELECT 'volume ' || id || ' has an ID that was never assigned'
       FROM volume WHERE id >= (SELECT next_volume FROM server))",
    R"(SELECT 'volume ' || id || ' has more free than total bytes' FROM volume
       WHERE CASE WHEN total >= 0 THEN free < 0 OR free > total ELSE free < 0 AND free > total END)",
    R"(SELECT 'the label of volume ' || id || ' is longer than 255 bytes'
       FROM volume WHERE length(CAST(label AS BLOB)) > 255)",
    R"(SELECT 'the file system name of volume ' || id || ' is longer than 29 bytes'
       FROM volume WHERE length(CAST(file_system AS BLOB)) > 29)",
    R"(SELECT 'volume ' || volume || ' is on a side of medium ' || medium || ' without a file system'
       FROM side WHERE volume IS NOT NULL AND content IN (4, 5))",
    R"(SELECT 'volume ' || v.id || ' is a disc but is on ' || count(*) || ' sides'
       FROM volume v JOIN side i ON i.volume = v.id WHERE v.type = 0 GROUP BY v.id HAVING count(*) > 1)",
    R"(SELECT 'volume ' || i.volume || ' has ' || count(*) || ' sides with the part number ' || i.part
       FROM side i JOIN volume v ON v.id = i.volume WHERE v.type <> 0 AND i.part <> 0
       GROUP BY i.volume, i.part HAVING count(*) > 1)",
    R"(SELECT 'volume ' || volume || ' is on ' || count(*) || ' sides; the limit is 100000'
       FROM side WHERE volume IS NOT NULL GROUP BY volume HAVING count(*) > 100000)",
    R"(SELECT 'volume ' || v.id || ' was never imported but is in a slot or an export station'
       FROM volume v JOIN side i ON i.volume = v.id JOIN medium d ON d.id = i.medium
       WHERE v.id < 0 AND d.place IN (1, 3))",
    R"(SELECT 'volume ' || v.id || ' was never imported but is on no medium'
       FROM volume v LEFT JOIN side i ON i.volume = v.id WHERE v.id < 0 AND i.volume IS NULL)",
    R"(SELECT 'volume ' || volume || ' was never imported but has the directory name "' || name || '"'
       FROM directory WHERE volume < 0)",
    // A disc or a volume set is online when all of its sides are in slots of present magazines, a mirror when
    // one is.
    R"(SELECT 'volume ' || id || ' is recorded as '
              || CASE shown WHEN 0 THEN 'active' WHEN 1 THEN 'disabled' WHEN 2 THEN 'offline'
                            ELSE 'state ' || shown END
              || ' but should be '
              || CASE due WHEN 0 THEN 'active' WHEN 1 THEN 'disabled' WHEN 2 THEN 'offline'
                          ELSE 'state ' || due END
       FROM (SELECT v.id, v.state AS shown,
                    coalesce(o.state,
                             CASE WHEN p.reached > 0 AND (p.reached = p.total OR v.type = 1) THEN 1 - v.enabled
                                  ELSE 2 END) AS due
             FROM volume v
             LEFT JOIN odd_state o ON o.volume = v.id
             LEFT JOIN (SELECT i.volume AS id, count(*) AS total, sum(d.place = 1 AND g.present = 1) AS reached
                        FROM side i CROSS JOIN medium d ON d.id = i.medium
                        LEFT JOIN magazine g ON g.jukebox = d.jukebox AND g.number = d.magazine
                        WHERE i.volume IS NOT NULL GROUP BY i.volume) p ON p.id = v.id)
       WHERE shown <> due)",
    R"(SELECT 'state ' || o.state || ' is set for volume ' || o.volume || ', which does not exist'
       FROM odd_state o LEFT JOIN volume v ON v.id = o.volume WHERE v.id IS NULL)",

    // ---- Directory names
    R"(SELECT 'the directory name "' || r.name || '" belongs to volume ' || r.volume || ', which does not exist'
       FROM directory r LEFT JOIN volume v ON v.id = r.volume WHERE v.id IS NULL)",
    R"(SELECT 'volume ' || volume || ' has an empty directory name' FROM directory WHERE length(name) = 0)",
    R"(SELECT 'a directory name of volume ' || volume || ' is longer than 1023 bytes'
       FROM directory WHERE length(CAST(name AS BLOB)) > 1023)",
    R"(SELECT 'volumes ' || min(volume) || ' and ' || max(volume) || ' have the same directory name, "' || name || '"'
       FROM directory GROUP BY name HAVING count(*) > 1)",
};

constexpr Sql kIsObserved = R"sql(SELECT 1 FROM server WHERE journal_limit > 0 OR fault_count > 0)sql";

// What the journal does not have, although it is on.
std::string UnrecordedText(Database& database) {
    if (const auto time = FindUnrecordedCalls(database); time.has_value())
        return "Some calls could not be recorded in the journal, the last at " + TimeText(*time) + ".\n";
    if (!database.IsReadOnly() || !FindValue<bool>(database, kIsObserved).has_value()) return {};
    return "The farm cannot be written: calls are not recorded in its journal, and faults have no effect.\n";
}

void Check(const CheckOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenServerToCheck(options.server);
    std::string breaches;
    const auto add = [&](const std::string& breach) {
        breaches.append(breaches.empty() ? "" : "\n").append(breach);
    };
    database->Execute("BEGIN");
    for (const std::string& finding : FindValues<std::string>(*database, "PRAGMA integrity_check")) {
        if (finding != "ok") add("the file is damaged: " + finding);
    }
    for (const Sql rule : kRules) {
        for (const std::string& breach : FindValues<std::string>(*database, rule))
            add(breach);
    }
    database->Execute("COMMIT");
    if (!breaches.empty()) throw ToolFailure(breaches);
    streams.out << "The farm of server \"" << options.server << "\" is sound.\n";
    streams.out << UnrecordedText(*database) << PlacesText("Farm", PathText(database->GetFile())) << '\n';
}

}  // namespace

void AddCheck(CommandLine& line) {
    const auto [app, options] = line.Add(line.GetTool(), "check", "Verify that a farm is sound.", Check);
    AddServerOption(app, options.server);
}

}  // namespace embedded::tools
