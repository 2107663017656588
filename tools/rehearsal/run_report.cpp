#include "tools/rehearsal/run_report.h"

#include <nlohmann/json.hpp>

#include "embedded/layout/text_encoding.h"
#include "tools/farm_diff/plan_json.h"
#include "tools/rehearsal/junit_report.h"
#include "tools/rehearsal/run_page.h"

namespace embedded::tools {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kSchema = 1;

Json Text(const std::string& bytes) {
    if (IsText(bytes)) return bytes;
    return {{"hex", ToHex(bytes)}};
}

Json CallsObject(const CallCounts& calls) {
    return {{"all", calls.all}, {"failed", calls.failed}, {"functions", calls.byFunction}};
}

double SecondsOf(std::chrono::microseconds duration) {
    return std::chrono::duration<double>(duration).count();
}

Json TimeObject(const RunReport& report) {
    Json jukeboxes = Json::array();
    for (const JukeboxTime& jukebox : report.time.jukeboxes) {
        jukeboxes.push_back({{"jukebox", jukebox.id},
                             {"name", Text(jukebox.name)},
                             {"duration_s", SecondsOf(jukebox.duration)},
                             {"moving_s", SecondsOf(jukebox.moving)}});
    }
    return {{"duration_s", SecondsOf(report.time.end)},
            {"late", report.late.has_value()},
            {"jukeboxes", std::move(jukeboxes)}};
}

Json ReportObject(const RunReport& report) {
    Json command = Json::array();
    for (const std::string& word : report.words)
        command.push_back(Text(word));
    Json expectations = Json::array();
    for (const ExpectationResult& result : report.expectations) {
        expectations.push_back({{"line", result.line},
                                {"text", Text(result.text)},
                                {"holds", !result.failure.has_value()},
                                {"instead", result.failure.has_value() ? Text(*result.failure) : Json()}});
    }
    Json faults = Json::array();
    for (const FaultRun& run : report.faultRuns) {
        faults.push_back({{"function", run.call.function},
                          {"call", run.call.nth},
                          {"item", Text(run.call.item)},
                          {"reached", run.isReached},
                          {"swallowed", run.IsSwallowed()},
                          {"status", run.outcome.status},
                          {"plan", PlanObject(run.outcome.plan)}});
    }
    return {{"schema", kSchema},
            {"server", Text(report.server)},
            {"command", std::move(command)},
            {"status", report.outcome.status},
            {"duration_ms", report.outcome.duration.count()},
            {"calls", CallsObject(report.outcome.calls)},
            {"simulated", TimeObject(report)},
            {"plan", PlanObject(report.outcome.plan)},
            {"expectations", std::move(expectations)},
            {"faults", std::move(faults)}};
}

}  // namespace

std::string CommandText(const RunReport& report) {
    std::string text;
    for (const std::string& word : report.words)
        text += (text.empty() ? "" : " ") + PrintableText(word);
    return text;
}

std::optional<ReportFormat> ReportFormatOf(const std::filesystem::path& file) {
    if (file.extension() == ".json") return ReportFormat::Json;
    if (file.extension() == ".xml") return ReportFormat::JUnit;
    if (file.extension() == ".html") return ReportFormat::Html;
    return std::nullopt;
}

void WriteReport(std::ostream& out, ReportFormat format, const RunReport& report) {
    switch (format) {
        case ReportFormat::Json:
            out << ReportObject(report).dump(2) << '\n';
            return;
        case ReportFormat::JUnit:
            return WriteJUnit(out, report);
        case ReportFormat::Html:
            return WriteRunPage(out, report);
    }
}

}  // namespace embedded::tools
