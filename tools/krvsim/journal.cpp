// krvsim journal: every call that any process made.
#include <map>
#include <nlohmann/json.hpp>
#include <thread>

#include "embedded/farms/servers.h"
#include "embedded/layout/layout_writer.h"
#include "embedded/store/transaction.h"
#include "tools/common/command.h"
#include "tools/common/counted.h"
#include "tools/common/interruption.h"
#include "tools/common/local_time.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/farm_query.h"
#include "tools/krvsim/item_words.h"

namespace embedded::tools {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kEntries =
    "SELECT id, time, duration, process, session, function, jukebox, magazine, slot, side, drive, volume, "
    "argument, "
    "succeeded, code, text, change FROM journal WHERE id > ?1 ORDER BY id";

std::chrono::system_clock::time_point TimeOf(const Row& row) {
    return std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(
            std::chrono::microseconds(row.Integer(1))));
}

// Control characters and bytes that are no text would upset a terminal.
std::string Printable(const std::string& text) {
    if (!IsText(text)) return "0x" + ToHex(text);
    std::string printable;
    for (const char character : text) {
        printable += static_cast<unsigned char>(character) < 0x20 || character == 0x7F ? '?' : character;
    }
    return printable;
}

std::string Line(const Row& row) {
    std::string line = std::to_string(row.Integer(0)) + "  " + PreciseTimeText(TimeOf(row)) + "  process " +
                       std::to_string(row.Integer(3)) + "  " + row.Text(5);
    const std::string item = ItemWords(ItemOfRow(row, 6), "");
    if (!item.empty()) line += "  " + item;
    if (!row.Text(12).empty()) line += "  \"" + Printable(row.Text(12)) + "\"";
    line += "  ";
    if (row.Integer(13) != 0) {
        line += "ok";
    } else {
        line += "failed with " + std::to_string(row.Integer(14)) + ": " + Printable(row.Text(15));
    }
    line += "  " + std::to_string(row.Integer(2)) + " us";
    if (!row.Text(16).empty()) line += "  " + Printable(row.Text(16));
    return line;
}

Json Text(const std::string& bytes) {
    if (IsText(bytes)) return bytes;
    return {{"hex", ToHex(bytes)}};
}

Json Number(const std::optional<int64_t>& number, int64_t add) {
    return number.has_value() ? Json(*number + add) : Json();
}

// One object a line; the numbers of the item count from 1.
Json Object(const Row& row) {
    const Item item = ItemOfRow(row, 6);
    Json side = Json();
    if (item.side == 0) side = "A";
    if (item.side == 1) side = "B";
    if (item.side == 2) side = "both";
    return {{"id", row.Integer(0)},
            {"time", PreciseTimeText(TimeOf(row))},
            {"duration_us", row.Integer(2)},
            {"process", row.Integer(3)},
            {"session", static_cast<uint64_t>(row.Integer(4))},
            {"function", row.Text(5)},
            {"jukebox", Number(item.jukebox, 0)},
            {"magazine", Number(item.magazine, 1)},
            {"slot", Number(item.slot, 1)},
            {"side", side},
            {"drive", Number(item.drive, 1)},
            {"volume", Number(item.volume, 0)},
            {"argument", Text(row.Text(12))},
            {"succeeded", row.Integer(13) != 0},
            {"code", row.Integer(14)},
            {"text", Text(row.Text(15))},
            {"change", Text(row.Text(16))}};
}

// A journal that is switched off and empty would leave its reader wondering.
void RemarkOnSilence(Database& database, const JournalOptions& options, const Streams& streams) {
    if (FindNumber(database, "SELECT journal_limit FROM server", {}) != 0) return;
    if (FindNumber(database, "SELECT min(id) FROM journal", {}).has_value()) return;
    streams.err << "The journal of server \"" << options.server
                << "\" is empty and switched off (--on switches it on).\n";
}

void Show(Database& database, const JournalOptions& options, const Streams& streams) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kPause{200};
    const auto end =
        options.followFor.has_value() ? std::optional(Clock::now() + *options.followFor) : std::nullopt;
    int64_t last = options.since;
    std::optional<InterruptionNoted> interruption;
    if (options.follow) interruption.emplace();
    RemarkOnSilence(database, options, streams);
    while (true) {
        database.StartWaiting();
        ForEachRow(database, kEntries, {last}, [&](const Row& row) {
            last = row.Integer(0);
            streams.out << (options.json ? Object(row).dump() : Line(row)) << '\n';
        });
        streams.out.flush();
        // A reader that has gone away ends it.
        if (!options.follow || InterruptionNoted::IsInterrupted() || !streams.out.good() ||
            (end.has_value() && Clock::now() >= *end))
            return;
        std::this_thread::sleep_for(kPause);
    }
}

void SwitchOn(Database& database, const JournalOptions& options, const Streams& streams) {
    InTransaction(database, [&] {
        // A journal that runs goes on; only its limit is another one.
        Execute(database,
                "UPDATE server SET journal_start = CASE WHEN journal_limit = 0 THEN coalesce((SELECT max(id) "
                "FROM "
                "journal), 0) ELSE journal_start END, journal_limit = ?1",
                {options.limit});
    });
    streams.out << "The journal of server \"" << options.server << "\" is switched on and keeps "
                << Counted(options.limit, "call", "calls") << ".\n";
}

void SwitchOff(Database& database, const JournalOptions& options, const Streams& streams) {
    InTransaction(database, [&] { Execute(database, "UPDATE server SET journal_limit = 0", {}); });
    streams.out << "The journal of server \"" << options.server << "\" is switched off.\n";
}

// The word that a change begins with: "exported: ..." is of the kind "exported".
std::string KindOf(const std::string& change) {
    return change.substr(0, change.find(':'));
}

void Summarize(Database& database, const Streams& streams) {
    const int64_t start = FindNumber(database, "SELECT journal_start FROM server", {}).value_or(0);
    const auto first = FindNumber(database, "SELECT min(id) FROM journal WHERE id > ?1", {start});
    if (first.has_value() && *first > start + 1) {
        const int64_t lost = *first - start - 1;
        streams.out << "The first " << Counted(lost, "call is", "calls are")
                    << " no longer in the journal.\n";
    }
    std::map<std::string, int64_t> kinds;
    int64_t changes = 0;
    ForEachRow(database, "SELECT change FROM journal WHERE id > ?1 AND change <> '' ORDER BY id", {start},
               [&](const Row& row) {
                   const std::string change = row.Text(0);
                   ++kinds[KindOf(change)];
                   ++changes;
                   streams.out << Printable(change) << '\n';
               });
    const int64_t calls =
        FindNumber(database, "SELECT count(*) FROM journal WHERE id > ?1", {start}).value_or(0);
    const int64_t failed =
        FindNumber(database, "SELECT count(*) FROM journal WHERE id > ?1 AND succeeded = 0", {start})
            .value_or(0);
    streams.out << Counted(changes, "change", "changes");
    const char* separator = ": ";
    for (const auto& [kind, count] : kinds) {
        streams.out << separator << count << " " << kind;
        separator = ", ";
    }
    streams.out << "; " << Counted(calls, "call", "calls") << ", " << failed << " of them failed.\n";
}

}  // namespace

void Journal(const JournalOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenServer(options.server);
    switch (options.task) {
        case JournalTask::SwitchOn:
            return SwitchOn(*database, options, streams);
        case JournalTask::SwitchOff:
            return SwitchOff(*database, options, streams);
        case JournalTask::Summary:
            return Summarize(*database, streams);
        case JournalTask::Show:
            return Show(*database, options, streams);
    }
}

}  // namespace embedded::tools
