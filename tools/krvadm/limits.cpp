#include "tools/krvadm/limits.h"

#include <algorithm>
#include <charconv>

#include "embedded/catalogue/attachment.h"
#include "embedded/catalogue/items.h"
#include "tools/common/plain_text.h"
#include "tools/krvadm/attached_server.h"
#include "tools/krvadm/common_options.h"

namespace embedded::tools {
namespace {

struct LimitsOptions {
    std::string server;
    std::string jukebox;
    std::vector<std::string> changes;
};

constexpr TimeLimits kUsual;

TimeLimits::Seconds SecondsIn(const std::string& text, const TimeLimitInfo& info) {
    if (text == "default") return kUsual.*info.limit;
    int64_t seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds);
    if (error != std::errc() || stop != end || seconds < 1 || seconds > kLongestTimeLimit.count()) {
        throw UsageFailure("the time limit \"" + std::string(info.name) +
                           "\" is a number of seconds from 1 to " +
                           std::to_string(kLongestTimeLimit.count()) + ", or the word default");
    }
    return TimeLimits::Seconds(seconds);
}

const TimeLimitInfo& FindLimit(const std::string& name) {
    const auto limits = AllTimeLimits();
    const auto found = std::ranges::find(limits, name, &TimeLimitInfo::name);
    if (found != limits.end()) return *found;
    std::string names;
    for (const TimeLimitInfo& info : limits)
        names += (names.empty() ? "" : ", ") + std::string(info.name);
    throw UsageFailure("there is no time limit \"" + name + "\"; there are " + names);
}

void ShowLimits(const TimeLimits& limits, std::ostream& out) {
    TextTable table({"  Limit", "Seconds", "Default", "Counts while"});
    for (const TimeLimitInfo& info : AllTimeLimits()) {
        table.Add({"  " + std::string(info.name), std::to_string((limits.*info.limit).count()),
                   std::to_string((kUsual.*info.limit).count()), info.meaning});
    }
    table.Write(out);
}

void Limits(const LimitsOptions& options, const Streams& streams) {
    (void)WithLimits(kUsual, options.changes);  // refused before anything is changed
    AttachedServer server(options.server);
    Database& database = server.GetDatabase();
    const std::vector<int32_t> jukeboxes = server.FindJukeboxes(options.jukebox);
    if (!options.changes.empty()) {
        InTransaction(database, [&] {
            for (const int32_t jukebox : jukeboxes) {
                RecordTimeLimits(database, jukebox,
                                 WithLimits(ReadTimeLimits(database, jukebox), options.changes));
            }
        });
    }
    for (const int32_t jukebox : jukeboxes) {
        streams.out << "Jukebox " << FindJukebox(database, jukebox).name << " (@" << jukebox << ")\n";
        ShowLimits(ReadTimeLimits(database, jukebox), streams.out);
    }
}

}  // namespace

TimeLimits WithLimits(TimeLimits limits, const std::vector<std::string>& changes) {
    for (const std::string& change : changes) {
        const size_t equals = change.find('=');
        if (equals == std::string::npos)
            throw UsageFailure('"' + change + "\" is not of the form NAME=SECONDS");
        const std::string name = change.substr(0, equals);
        const TimeLimitInfo& info = FindLimit(name);
        limits.*info.limit = SecondsIn(change.substr(equals + 1), info);
    }
    return limits;
}

std::string LimitsText(const TimeLimits& limits) {
    std::string text;
    for (const TimeLimitInfo& info : AllTimeLimits()) {
        if (limits.*info.limit == kUsual.*info.limit) continue;
        text += (text.empty() ? "" : ", ") + std::string(info.name) + ' ' +
                std::to_string((limits.*info.limit).count()) + " s";
    }
    return text.empty() ? "as usual" : text;
}

void AddLimits(CommandLine& line) {
    const auto [app, options] =
        line.Add(line.GetTool(), "limits", "Show or change how long devices may take.", Limits);
    app.add_option("--server", options.server, "server")->required();
    app.add_option("--jukebox,-J", options.jukebox, "only this jukebox, by name or as @ID");
    app.add_option("CHANGE", options.changes, "NAME=SECONDS, or NAME=default");
}

}  // namespace embedded::tools
