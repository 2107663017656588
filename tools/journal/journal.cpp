#include <map>
#include <nlohmann/json.hpp>
#include <thread>

#include "embedded/farms/servers.h"
#include "embedded/journal/journal.h"
#include "embedded/layout/text_encoding.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/long_task.h"
#include "tools/common/plain_text.h"
#include "tools/journal/call_items.h"
#include "tools/journal/call_times.h"
#include "tools/journal/journal.h"

namespace embedded::tools {
namespace {

using Json = nlohmann::ordered_json;

enum class JournalTask { Show, SwitchOn, SwitchOff, Summary };

struct JournalOptions {
    std::string server = ".";
    JournalTask task = JournalTask::Show;
    int64_t limit = 100'000;  // how many entries are kept
    bool follow = false;
    bool json = false;
    int64_t since = 0;  // only entries with a higher ID
    TimeOptions times;
};

// A journal that is on keeps its start and gets another limit.
constexpr Sql kSwitchOn = R"sql(
    UPDATE server SET
        journal_start = CASE WHEN journal_limit = 0
            THEN coalesce((SELECT max(id) FROM journal), 0) ELSE journal_start END,
        journal_limit = ?1
)sql";

constexpr Sql kFirstEntry = R"sql(SELECT min(id) FROM journal WHERE id > ?1)sql";
constexpr Sql kChanges = R"sql(SELECT change FROM journal WHERE id > ?1 AND change <> '' ORDER BY id)sql";
constexpr Sql kCalls = R"sql(
    SELECT count(*), coalesce(sum(succeeded = 0), 0) FROM journal WHERE id > ?1
)sql";

std::string LineOf(const StoredJournalEntry& entry) {
    std::string line = std::to_string(entry.id) + "  " + PreciseTimeText(entry.time) + "  process " +
                       std::to_string(entry.process) + "  " + entry.function;
    const std::string item = ItemText(entry.item);
    if (!item.empty()) line += "  " + item;
    if (!entry.argument.empty()) line += "  \"" + PrintableText(entry.argument) + "\"";
    line += "  ";
    if (entry.succeeded) {
        line += "ok";
    } else {
        line += "failed with " + std::to_string(entry.code) + ": " + PrintableText(entry.text);
    }
    line += "  " + std::to_string(entry.duration) + " us";
    if (!entry.change.empty()) line += "  " + PrintableText(entry.change);
    return line;
}

Json Text(const std::string& bytes) {
    if (IsText(bytes)) return bytes;
    return {{"hex", ToHex(bytes)}};
}

Json OneBased(const std::optional<int64_t>& number) {
    return number.has_value() ? Json(*number + 1) : Json();
}

Json Id(const std::optional<int64_t>& id) {
    return id.has_value() ? Json(*id) : Json();
}

Json Side(const std::optional<int64_t>& side) {
    constexpr const char* kWords[] = {"A", "B", "both"};
    return side.has_value() && *side >= 0 && *side <= 2 ? Json(kWords[*side]) : Json();
}

Json ObjectOf(const StoredJournalEntry& entry) {
    return {{"id", entry.id},
            {"time", PreciseTimeText(entry.time)},
            {"duration_us", entry.duration},
            {"process", entry.process},
            {"session", entry.session},
            {"function", entry.function},
            {"jukebox", Id(entry.item.jukebox)},
            {"magazine", OneBased(entry.item.magazine)},
            {"slot", OneBased(entry.item.slot)},
            {"side", Side(entry.item.side)},
            {"drive", OneBased(entry.item.drive)},
            {"volume", Id(entry.item.volume)},
            {"argument", Text(entry.argument)},
            {"succeeded", entry.succeeded},
            {"code", entry.code},
            {"text", Text(entry.text)},
            {"change", Text(entry.change)}};
}

// Explains an empty output.
void RemarkOnEmptyJournal(Database& database, const JournalOptions& options, const Streams& streams) {
    if (FindValue<int64_t>(database, "SELECT journal_limit FROM server") != 0) return;
    if (FindValue<int64_t>(database, "SELECT min(id) FROM journal").has_value()) return;
    streams.err << "The journal of server \"" << options.server
                << "\" is empty and switched off (--on switches it on).\n";
}

void Show(Database& database, const JournalOptions& options, const Streams& streams) {
    constexpr std::chrono::milliseconds kPause{200};
    int64_t last = options.since;
    std::optional<InterruptGuard> guard;
    if (options.follow) guard.emplace();
    RemarkOnEmptyJournal(database, options, streams);
    while (true) {
        database.StartWaiting();
        ReadJournal(database, last, [&](const StoredJournalEntry& entry) {
            last = entry.id;
            streams.out << (options.json ? ObjectOf(entry).dump() : LineOf(entry)) << '\n';
        });
        streams.out.flush();
        // A closed pipe ends it, too.
        if (!options.follow || InterruptGuard::IsInterrupted() || !streams.out.good()) return;
        std::this_thread::sleep_for(kPause);
    }
}

void SwitchOn(Database& database, const JournalOptions& options, const Streams& streams) {
    InTransaction(database, [&] { Run(database, kSwitchOn, options.limit); });
    ForgetUnrecordedCalls(database);
    streams.out << "The journal of server \"" << options.server << "\" is switched on and keeps "
                << Counted(options.limit, "call", "calls") << ".\n";
}

void SwitchOff(Database& database, const JournalOptions& options, const Streams& streams) {
    InTransaction(database, [&] { Run(database, "UPDATE server SET journal_limit = 0"); });
    streams.out << "The journal of server \"" << options.server << "\" is switched off.\n";
}

// The word that a change begins with, such as "exported" of "exported: ...".
std::string KindOf(const std::string& change) {
    return change.substr(0, change.find(':'));
}

void Summarize(Database& database, const TimeOptions& times, const Streams& streams) {
    const std::optional<DurationProfile> profile = ReadProfile(times);
    const int64_t start = FindValue<int64_t>(database, "SELECT journal_start FROM server").value_or(0);
    const auto first = FindValue<int64_t>(database, kFirstEntry, start);
    if (first.has_value() && *first > start + 1) {
        streams.out << "The first " << Counted(*first - start - 1, "call is", "calls are")
                    << " no longer in the journal.\n";
    }
    std::map<std::string, int64_t> kinds;
    int64_t changes = 0;
    Statement entry(database, kChanges, start);
    while (entry.Next()) {
        const auto change = entry.Read<std::string>();
        ++kinds[KindOf(change)];
        ++changes;
        streams.out << PrintableText(change) << '\n';
    }
    streams.out << Counted(changes, "change", "changes");
    const char* separator = ": ";
    for (const auto& [kind, count] : kinds) {
        streams.out << separator << count << " " << kind;
        separator = ", ";
    }
    Statement row(database, kCalls, start);
    row.Next();
    const auto [calls, failed] = row.Read<int64_t, int64_t>();
    streams.out << "; " << Counted(calls, "call", "calls") << ", " << failed << " failed.\n";
    WriteTimes(TimeOfJournal(database, start, profile), times, streams);
}

void Journal(const JournalOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenServer(options.server);
    switch (options.task) {
        case JournalTask::SwitchOn:
            return SwitchOn(*database, options, streams);
        case JournalTask::SwitchOff:
            return SwitchOff(*database, options, streams);
        case JournalTask::Summary:
            return Summarize(*database, options.times, streams);
        case JournalTask::Show:
            return Show(*database, options, streams);
    }
}

}  // namespace

void AddJournal(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "journal", "Show the calls that were made.", Journal);
    AddServerOption(app, options.server);
    const auto addTask = [&command = app, &chosen = options](const char* name, JournalTask task,
                                                             const char* description) {
        return command.add_flag_callback(
            name, [&chosen, task] { chosen.task = task; }, description);
    };
    CLI::Option* on = addTask("--on", JournalTask::SwitchOn, "switch the journal on");
    CLI::Option* off = addTask("--off", JournalTask::SwitchOff, "switch the journal off; its entries stay");
    CLI::Option* summary =
        addTask("--summary", JournalTask::Summary, "show what changed since it was switched on");
    on->excludes(off, summary);
    off->excludes(summary);
    AddTimeOptions(app, *summary, options.times);
    app.add_option("--limit", options.limit, "number of calls to keep")
        ->capture_default_str()
        ->check(FromTo(1, 100'000'000))
        ->needs(on);
    for (CLI::Option* show : {app.add_flag("--follow", options.follow, "continue until interrupted"),
                              app.add_flag("--json", options.json, "one JSON object per line"),
                              app.add_option("--since", options.since, "only calls with a higher number")}) {
        show->excludes(on, off, summary);
    }
}

}  // namespace embedded::tools
