#include "tools/rehearsal/junit_report.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "embedded/layout/text_encoding.h"
#include "tools/farm_diff/plan_text.h"

namespace embedded::tools {
namespace {

// U+FFFE and U+FFFF, the only characters that are printable text and not allowed in XML, as "?".
std::string WithoutNoncharacters(std::string text) {
    for (const char* character : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (size_t found = text.find(character); found != std::string::npos; found = text.find(character))
            text.replace(found, std::strlen(character), "?");
    }
    return text;
}

// As the content of an element or of an attribute between quotation marks.
std::string InXml(const std::string& bytes) {
    std::string text;
    for (const char character : WithoutNoncharacters(PrintableText(bytes))) {
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

}  // namespace

void WriteJUnit(std::ostream& out, const RunReport& report) {
    const std::vector<TestCase> cases = TestCasesOf(report);
    const auto failures =
        std::ranges::count_if(cases, [](const TestCase& test) { return test.failure.has_value(); });
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n  <testsuite name=\""
        << InXml(CommandText(report)) << "\" tests=\"" << cases.size() << "\" failures=\"" << failures
        << R"(" errors="0" time=")" << static_cast<double>(report.outcome.duration.count()) / 1000.0
        << "\">\n";
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

}  // namespace embedded::tools
