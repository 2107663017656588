#include "tools/journal/call_times.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "embedded/layout/text_encoding.h"
#include "embedded/simulated/durations/deadline.h"
#include "embedded/simulated/real_time.h"
#include "embedded/store/statement.h"
#include "tools/journal/call_items.h"

namespace embedded::tools {
namespace {

constexpr Sql kJukeboxes = R"sql(SELECT id, name, slot_count FROM jukebox ORDER BY id)sql";

std::string ReadProfileText(const std::string& profile) {
    if (profile == "small") return std::string(SmallProfileText());
    if (profile == "large") return std::string(LargeProfileText());
    std::error_code ignored;
    std::ifstream stream(profile, std::ios::binary);
    std::stringstream text;
    if (std::filesystem::is_directory(profile, ignored) || !stream.is_open() || !(text << stream.rdbuf())) {
        throw ToolFailure(profile + ": cannot be read; a profile is small, large or a file");
    }
    return text.str();
}

std::chrono::minutes TimeOfDay(const std::string& text) {
    if (text.empty()) return LocalTimeOfDay(std::chrono::system_clock::now());
    return *ReadTimeOfDay(text);
}

CLI::Validator IsTimeOfDay() {
    return {[](const std::string& text) {
                return ReadTimeOfDay(text).has_value() ? std::string()
                                                       : '"' + text + "\" is not a time of day such as 06:00";
            },
            ""};
}

}  // namespace

std::array<CLI::Option*, 2> AddTimeOptions(CLI::App& command, TimeOptions& options) {
    CLI::Option* profile = command.add_option(
        "--profile", options.profile,
        "durations of the jukeboxes: small, large or a file; by default as many slots demand");
    CLI::Option* deadline =
        command
            .add_option("--deadline", options.deadline, "warn if the calls would end after this time of day")
            ->check(IsTimeOfDay());
    command
        .add_option("--start", options.start, "time of day at which the calls would start; by default now")
        ->check(IsTimeOfDay())
        ->needs(deadline);
    return {profile, deadline};
}

void AddTimeOptions(CLI::App& command, CLI::Option& show, TimeOptions& options) {
    for (CLI::Option* option : AddTimeOptions(command, options))
        option->needs(&show);
}

std::optional<DurationProfile> ReadProfile(const TimeOptions& options) {
    if (options.profile.empty()) return std::nullopt;
    ProfileResult result = ReadDurationProfile(ReadProfileText(options.profile));
    if (result.problems.empty()) return std::move(result.profile);
    std::string message;
    for (const Problem& problem : result.problems) {
        if (!message.empty()) message += '\n';
        message += ProblemText(options.profile, problem);
    }
    throw ToolFailure(message);
}

std::string RealTimeProfile(const std::string& profile) {
    if (profile.empty()) return std::string(kDefaultProfiles);
    TimeOptions options;
    options.profile = profile;
    (void)ReadProfile(options);
    return ReadProfileText(profile);
}

std::vector<TimedJukebox> ReadTimedJukeboxes(Database& database) {
    std::vector<TimedJukebox> jukeboxes;
    Statement row(database, kJukeboxes);
    while (row.Next()) {
        TimedJukebox& jukebox = jukeboxes.emplace_back();
        row >> jukebox.id >> jukebox.name >> jukebox.slots;
    }
    return jukeboxes;
}

SimulatedTime TimeOfJournal(Database& database, int64_t last, const std::optional<DurationProfile>& profile) {
    std::vector<StoredJournalEntry> entries;
    ReadJournal(database, last, [&](const StoredJournalEntry& entry) {
        if (IsTimed(entry)) entries.push_back(entry);
    });
    return SimulateTime(entries, ReadTimedJukeboxes(database), profile);
}

std::optional<std::string> DeadlineWarning(const SimulatedTime& time, const TimeOptions& options) {
    if (options.deadline.empty()) return std::nullopt;
    return LateText(TimeOfDay(options.start), time.end, TimeOfDay(options.deadline));
}

void WriteTimes(const SimulatedTime& time, const TimeOptions& options, const Streams& streams) {
    for (const std::string& line : TimeLines(time))
        streams.out << PrintableText(line) << '\n';
    if (const auto late = DeadlineWarning(time, options); late.has_value()) streams.err << *late << '\n';
}

std::vector<PageCall> PageCallsOf(const std::vector<StoredJournalEntry>& entries, const SimulatedTime& time) {
    constexpr size_t kLongJournal = 10'000;
    std::vector<PageCall> calls;
    for (size_t index = 0; index < entries.size(); ++index) {
        const StoredJournalEntry& entry = entries[index];
        const CallTime& when = time.calls[index];
        const bool onlyLooks = entry.succeeded && entry.change.empty() && when.duration.count() == 0;
        if (onlyLooks && entries.size() > kLongJournal) continue;
        PageCall& call = calls.emplace_back();
        call.start = when.start;
        call.duration = when.duration;
        call.moving = when.moving;
        call.function = entry.function;
        call.item = ItemText(entry.item);
        call.argument = entry.argument;
        call.succeeded = entry.succeeded;
        call.code = entry.code;
        call.text = entry.text;
        call.change = entry.change;
    }
    return calls;
}

}  // namespace embedded::tools
