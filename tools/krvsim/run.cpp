#include <filesystem>
#include <fstream>
#include <limits>

#include "embedded/farms/farm_reader.h"
#include "embedded/farms/farm_writer.h"
#include "embedded/farms/servers.h"
#include "embedded/farms/snapshots.h"
#include "embedded/platform/platform.h"
#include "embedded/simulated/real_time.h"
#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/journal/call_items.h"
#include "tools/journal/call_times.h"
#include "tools/krvsim/each_fault.h"
#include "tools/krvsim/fault_request.h"
#include "tools/krvsim/new_farm.h"
#include "tools/krvsim/new_media.h"
#include "tools/krvsim/plan_colours.h"
#include "tools/krvsim/tool.h"
#include "tools/library_reader/farm_copy.h"
#include "tools/rehearsal/process.h"
#include "tools/rehearsal/run_report.h"
#include "tools/rehearsal/simulated_library.h"

namespace embedded::tools {
namespace {

constexpr int kRehearsalFailed = 70;
constexpr int kExpectationFailed = 71;

struct RunOptions {
    std::string server = ".";
    CopyOptions source;
    std::string keep;  // a server
    std::vector<std::string> faults;
    std::vector<std::string> waiting;
    std::string expect;
    std::string report;
    Isolation isolation = Isolation::ClosedOff;
    bool eachFault = false;
    EachFault sweep;
    TimeOptions times;
    bool isRealTime = false;
    std::vector<std::string> words;
};

// "MyBox: 3 DVD-RAM Incoming"
void AddWaiting(Database& database, const std::string& text) {
    const size_t separator = text.rfind(": ");
    if (separator == std::string::npos)
        throw UsageFailure("\"" + text + R"(" is not such as "MyBox: 3 DVD-RAM Incoming")");
    const NewMedia media = NewMediaOf(text.substr(separator + 2));
    AddNewMedia(database, media, FindJukebox(database, text.substr(0, separator)));
}

void MakeCopy(const RunOptions& options, const PrivateCopy& copy, const Streams& streams) {
    if (options.source.library.empty()) {
        CopyFarm(*OpenSimulatedServer(options.server), copy.GetFarm());
        return;
    }
    const FarmCopy read = CopyFarm(options.source, streams);
    if (read.unread != 0 && options.source.incomplete == Incomplete::Refused)
        throw ToolFailure("the farm cannot be read completely (--partial-ok accepts that)");
    CreateFarmAt(copy.GetFarm(), [&](Database& database) { WriteFarm(database, options.server, read.farm); });
}

// Media, faults, the journal and the speed of the copy. Returns the farm that the command meets.
Farm Prepare(const RunOptions& options, const PrivateCopy& copy) {
    const std::unique_ptr<Database> database = OpenFarmAt(copy.GetFarm());
    if (database == nullptr) throw ToolFailure("the farm is empty");
    StartJournal(*database);
    InTransaction(*database, [&] {
        SetRealTime(*database, options.isRealTime ? RealTimeProfile(options.times.profile) : std::string());
        for (const std::string& waiting : options.waiting)
            AddWaiting(*database, waiting);
        for (const std::string& word : options.faults) {
            for (const FaultRequest& fault : ReadFaults(word))
                AddFaultTo(*database, fault);
        }
    });
    return ReadFarm(*database);
}

void Keep(const std::string& server, const PrivateCopy& copy) {
    const std::unique_ptr<Database> database = OpenFarmAt(copy.GetFarm());
    InTransaction(*database, [&] { Run(*database, "UPDATE server SET name = ?1", server); });
    if (!CopyFarm(*database, FarmPath(server)))
        throw ToolFailure("server \"" + server + "\" has a farm by now; the copy is not kept");
}

void WriteReportFile(const std::string& file, ReportFormat format, const RunReport& report) {
    std::ofstream stream(file, std::ios::binary);
    WriteReport(stream, format, report);
    stream.close();
    if (!stream) throw ToolFailure(file + ": cannot be written");
}

void WriteSummary(const RunOptions& options, const RunReport& report, std::ostream& out) {
    const RunOutcome& outcome = report.outcome;
    WritePlan(out, outcome.plan, PlanColours());
    out << "Rehearsed on a copy of server \"" << options.server
        << "\": " << Counted(outcome.calls.all, "call", "calls") << ", " << outcome.calls.failed
        << " failed, " << (outcome.plan.IsEmpty() ? "no changes" : CountText(outcome.plan))
        << "; exit status " << outcome.status << ".\n";
    for (const std::string& server : outcome.otherServers)
        out << "krvsim: warning: the command used server \"" << server << "\", which has no copy\n";
    WriteTimes(report.time, options.times, {out, out});
    if (options.eachFault) WriteFaultRuns(out, report.faultRuns);
}

std::string FailuresOf(const std::string& file, const RunReport& report) {
    std::string failures;
    for (const ExpectationResult& result : report.expectations) {
        if (result.failure.has_value())
            failures += (failures.empty() ? "" : "\n") + FailureText(file, result);
    }
    return failures;
}

// What is wrong before anything is run.
std::optional<ReportFormat> RequirePossible(const RunOptions& options) {
    std::optional<ReportFormat> format;
    if (!options.report.empty()) {
        format = ReportFormatOf(options.report);
        if (!format.has_value()) throw UsageFailure("--report: the name must end with .html, .xml or .json");
    }
    if (FindProgram(options.words.front()).empty())
        throw ToolFailure(options.words.front() + ": there is no such program");
    if (!options.keep.empty()) RequireRoom(options.keep, Existing::Keep);
    if (options.isolation == Isolation::ClosedOff) {
        const std::string obstacle = FindObstacle();
        if (!obstacle.empty()) {
            throw ToolFailure("the command cannot be closed off: " + obstacle +
                              "; --not-isolated relies on its environment alone");
        }
    }
    return format;
}

// How long the calls take and, for a page, the calls themselves.
void AddTimes(RunReport& report, Database& database, const RunOptions& options,
              const std::optional<DurationProfile>& profile, ReportFormat format) {
    std::vector<StoredJournalEntry> entries;
    ReadJournal(database, 0, [&](const StoredJournalEntry& entry) {
        if (format == ReportFormat::Html || IsTimed(entry)) entries.push_back(entry);
    });
    report.time = SimulateTime(entries, ReadTimedJukeboxes(database), profile);
    report.late = DeadlineWarning(report.time, options.times);
    if (format == ReportFormat::Html) report.calls = PageCallsOf(entries, report.time);
}

int RunOnCopy(const RunOptions& options, const Streams& streams) {
    const std::optional<ReportFormat> format = RequirePossible(options);
    std::vector<Expectation> expectations;
    if (!options.expect.empty()) expectations = ReadExpectationFile(options.expect);
    const std::optional<DurationProfile> profile = ReadProfile(options.times);
    const std::filesystem::path library = FindSimulatedLibrary();
    const PrivateCopy copy(options.server, library);
    MakeCopy(options, copy, streams);
    RunReport report;
    report.server = options.server;
    report.words = options.words;
    report.before = Prepare(options, copy);
    const std::filesystem::path baseline = copy.GetProgramFolder() / "baseline.db";
    if (options.eachFault) CopyFarm(*OpenFarmAt(copy.GetFarm()), baseline);
    streams.out.flush();
    streams.err.flush();
    RecordedOutput output;
    RecordedOutput* const record = format == ReportFormat::Html ? &output : nullptr;
    Rehearsal rehearsal = Rehearse(copy, {options.words, options.isolation, {}, record}, report.before);
    report.outcome = std::move(rehearsal.outcome);
    report.after = std::move(rehearsal.after);
    report.output = output.GetText();
    report.expectations = CheckExpectations(
        expectations, {report.after, &report.outcome.plan, report.outcome.calls, report.outcome.status});
    {
        const std::unique_ptr<Database> database = OpenFarmAt(copy.GetFarm());
        AddTimes(report, *database, options, profile, format.value_or(ReportFormat::Json));
        if (options.eachFault) {
            report.faultRuns = RunEachFault(
                options.sweep,
                {options.server, library, baseline, report.before, options.words, options.isolation},
                *database, streams);
        }
    }
    if (!options.keep.empty()) Keep(options.keep, copy);
    WriteSummary(options, report, streams.err);
    if (format.has_value()) WriteReportFile(options.report, *format, report);
    if (!report.outcome.otherLibraries.empty()) {
        throw ToolFailure("krvcmd was to run with another client library, " +
                          report.outcome.otherLibraries.front());
    }
    const std::string failures = FailuresOf(options.expect, report);
    if (!failures.empty()) throw ToolFailure(failures, kExpectationFailed);
    return report.outcome.status;
}

int RunCommand(const RunOptions& options, const Streams& streams) {
    try {
        return RunOnCopy(options, streams);
    } catch (const UsageFailure&) {
        throw;
    } catch (const ToolFailure& failure) {
        if (failure.GetStatus() == kExpectationFailed) throw;
        throw ToolFailure(failure.what(), kRehearsalFailed);
    } catch (const std::exception& failure) {
        throw ToolFailure(failure.what(), kRehearsalFailed);
    }
}

void AddCopySource(CLI::App& app, RunOptions& options) {
    CLI::Option* library = app.add_option("--from-library", options.source.library,
                                          "copy a farm through this client library (a file)");
    app.add_option("--from", options.source.from, "server to copy through the library")
        ->capture_default_str()
        ->needs(library);
    AddCopyOptions(app, *library, options.source);
    app.add_option("--keep", options.keep, "keep the copy as the farm of this server");
}

void AddWhatIf(CLI::App& app, RunOptions& options) {
    app.add_option("--fault", options.faults,
                   "a fault, a file of faults, or one of: " + PresetNames() + "; may be repeated")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();

    app.add_option("--waiting", options.waiting,
                   "put media into an import station, such as \"MyBox: 3 DVD-RAM Incoming\"; may be repeated")
        ->expected(1)
        ->allow_extra_args(false)
        ->take_all();

    CLI::Option* each = app.add_flag("--each-fault", options.eachFault,
                                     "repeat the run for each of its calls, with that call failing");
    app.add_option("--code", options.sweep.code, "code that the call fails with")
        ->capture_default_str()
        ->check(FromTo(1, std::numeric_limits<int32_t>::max()))
        ->needs(each);
    app.add_option("--function", options.sweep.function, "only the calls of this function")->needs(each);

    app.add_flag("--real-time", options.isRealTime, "calls take as long as on real jukeboxes")
        ->excludes(each);
}

}  // namespace

void AddRun(CommandLine& line) {
    const auto [app, options] = line.AddWithStatus<RunOptions>(
        line.GetTool(), "run", "Run a command on a copy of a farm, and show what it changed.", RunCommand);
    AddServerOption(app, options.server);
    AddCopySource(app, options);
    AddWhatIf(app, options);
    AddTimeOptions(app, options.times);
    app.add_option("--expect", options.expect, "file of expectations");
    app.add_option("--report", options.report,
                   "write a report, as its ending says: .html (a page), .xml (JUnit) or .json");
    app.add_flag_callback(
        "--not-isolated", [&chosen = options] { chosen.isolation = Isolation::EnvironmentOnly; },
        "run it where it cannot be closed off: the environment alone leads it to the copy");
    app.add_option("COMMAND", options.words, "the command and its arguments, behind --")->required();
    app.footer(
        "The exit status is that of the command, 70 if the rehearsal itself failed, 71 if an expectation did "
        "not hold.");
}

}  // namespace embedded::tools
