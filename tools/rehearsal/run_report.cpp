#include "tools/rehearsal/run_report.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "embedded/layout/text_encoding.h"
#include "tools/farm_diff/plan_json.h"
#include "tools/farm_diff/plan_text.h"

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
            {"plan", PlanObject(report.outcome.plan)},
            {"expectations", std::move(expectations)},
            {"faults", std::move(faults)}};
}

// As the content of an element or of an attribute between quotation marks.
std::string InXml(const std::string& bytes) {
    std::string text;
    for (const char character : PrintableText(bytes)) {
        switch (character) {
            case '&':
                text += "&amp;";
                break;
            case '<':
                text += "&lt;";
                break;
            case '>':
                text += "&gt;";
                break;
            case '"':
                text += "&quot;";
                break;
            default:
                text += character;
        }
    }
    return text;
}

struct TestCase {
    std::string group;
    std::string name;
    std::optional<std::string> failure;
};

std::vector<TestCase> TestCasesOf(const RunReport& report) {
    std::vector<TestCase> cases;
    // Without a line of its own, the exit status decides.
    const bool hasStatus = std::ranges::any_of(report.expectations, [](const ExpectationResult& result) {
        return result.text.starts_with("status");
    });
    if (!hasStatus) {
        const int status = report.outcome.status;
        cases.push_back({"command", "ends with exit status 0",
                         status == 0 ? std::nullopt : std::optional("it was " + std::to_string(status))});
    }
    for (const ExpectationResult& result : report.expectations)
        cases.push_back({"expectation", result.text, result.failure});
    for (const FaultRun& run : report.faultRuns) {
        if (!run.isReached) continue;
        cases.push_back(
            {"fault",
             "notices that call " + std::to_string(run.call.nth) + " of " + run.call.function + " fails",
             run.IsSwallowed() ? std::optional<std::string>("it ended with exit status 0, after " +
                                                            CountText(run.outcome.plan))
                               : std::nullopt});
    }
    return cases;
}

void WriteJUnit(std::ostream& out, const RunReport& report) {
    const std::vector<TestCase> cases = TestCasesOf(report);
    const auto failures =
        std::ranges::count_if(cases, [](const TestCase& test) { return test.failure.has_value(); });
    std::string command;
    for (const std::string& word : report.words)
        command += (command.empty() ? "" : " ") + word;
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n  <testsuite name=\"" << InXml(command)
        << "\" tests=\"" << cases.size() << "\" failures=\"" << failures << R"(" errors="0" time=")"
        << static_cast<double>(report.outcome.duration.count()) / 1000.0 << "\">\n";
    for (const TestCase& test : cases) {
        out << "    <testcase classname=\"" << test.group << "\" name=\"" << InXml(test.name) << '"';
        if (test.failure.has_value()) {
            out << ">\n      <failure message=\"" << InXml(*test.failure) << "\"/>\n    </testcase>\n";
        } else {
            out << "/>\n";
        }
    }
    out << "  </testsuite>\n</testsuites>\n";
}

}  // namespace

std::optional<ReportFormat> ReportFormatOf(const std::filesystem::path& file) {
    if (file.extension() == ".json") return ReportFormat::Json;
    if (file.extension() == ".xml") return ReportFormat::JUnit;
    return std::nullopt;
}

void WriteReport(std::ostream& out, ReportFormat format, const RunReport& report) {
    switch (format) {
        case ReportFormat::Json:
            out << ReportObject(report).dump(2) << '\n';
            return;
        case ReportFormat::JUnit:
            WriteJUnit(out, report);
            return;
    }
}

}  // namespace embedded::tools
