#include "embedded/farms/farm_reader.h"
#include "embedded/farms/servers.h"
#include "embedded/layout/json_writer.h"
#include "embedded/layout/layout_writer.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/farm_page/farm_page.h"
#include "tools/journal/call_times.h"
#include "tools/krvsim/tool.h"
#include "tools/library_reader/farm_copy.h"

namespace embedded::tools {
namespace {

struct DumpOptions {
    std::string server = ".";
    CopyOptions source;           // without a library, the farm of `server` is read
    std::string format = "toml";  // or "json" or "html"
    bool withJournal = false;
};

using Calls = std::optional<std::vector<PageCall>>;

void Write(const DumpOptions& options, const std::string& server, const Farm& farm, Calls calls,
           std::ostream& out) {
    if (options.format == "toml") return WriteLayout(out, server, farm);
    if (options.format == "json") return WriteJson(out, server, farm);
    FarmPage page;
    page.server = server;
    page.farm = &farm;
    page.calls = std::move(calls);
    WriteFarmPage(out, page);
}

// The calls since the journal was switched on.
std::vector<PageCall> ReadCalls(Database& database) {
    const int64_t start = FindValue<int64_t>(database, "SELECT journal_start FROM server").value_or(0);
    std::vector<StoredJournalEntry> entries;
    ReadJournal(database, start, [&](const StoredJournalEntry& entry) { entries.push_back(entry); });
    return PageCallsOf(entries, SimulateTime(entries, ReadTimedJukeboxes(database), std::nullopt));
}

void Dump(const DumpOptions& options, const Streams& streams) {
    if (options.withJournal && options.format != "html") {
        throw UsageFailure("--journal needs --format html");
    }
    if (options.source.library.empty()) {
        const std::unique_ptr<Database> database = OpenServer(options.server);
        Calls calls;
        if (options.withJournal) calls = ReadCalls(*database);
        Write(options, options.server, ReadFarm(*database), std::move(calls), streams.out);
        return;
    }
    const FarmCopy copy = CopyFarm(options.source, streams);
    Write(options, options.source.from, copy.farm, {}, streams.out);
    RequireComplete(copy, options.source);
}

}  // namespace

void AddDump(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "dump", "Write a farm as a layout file, as JSON or as a page.", Dump);
    CLI::Option* server = AddServerOption(app, options.server);
    CLI::Option* library =
        app.add_option("--library", options.source.library, "read through this client library (a file)");
    CLI::Option* from = app.add_option("--from", options.source.from, "server to read through the library")
                            ->capture_default_str();
    server->excludes(library);
    from->needs(library);
    AddCopyOptions(app, *library, options.source);
    CLI::Option* journal =
        app.add_flag("--journal", options.withJournal, "draw the calls of the journal, too (html only)");
    journal->excludes(library);
    app.add_option("--format", options.format, "toml, json or html")
        ->check(OneOf({"toml", "json", "html"}))
        ->type_name("FORMAT")
        ->capture_default_str();
}

}  // namespace embedded::tools
