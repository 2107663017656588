#include "tools/rehearsal/run_page.h"

#include "tools/common/plain_text.h"
#include "tools/farm_diff/plan_text.h"

namespace embedded::tools {
namespace {

std::string ChangesText(const Plan& plan) {
    return plan.IsEmpty() ? "no changes" : CountText(plan);
}

std::vector<std::string> RemarksOf(const RunReport& report) {
    std::vector<std::string> remarks;
    remarks.push_back(CommandText(report));
    remarks.push_back("exit status " + std::to_string(report.outcome.status) + "; " +
                      Counted(report.outcome.calls.all, "call", "calls") + ", " +
                      std::to_string(report.outcome.calls.failed) + " failed");
    for (std::string& line : TimeLines(report.time))
        remarks.push_back(std::move(line));
    if (report.late.has_value()) remarks.push_back(*report.late);
    for (const ExpectationResult& result : report.expectations) {
        remarks.push_back("expected: " + result.text +
                          (result.failure.has_value() ? ", but " + *result.failure : ", and it is so"));
    }
    for (const FaultRun& run : report.faultRuns) {
        if (!run.IsSwallowed()) continue;
        remarks.push_back("swallowed: the failure of call " + std::to_string(run.call.nth) + " of " +
                          run.call.function + (run.call.item.empty() ? "" : ", " + run.call.item) + "; " +
                          ChangesText(run.outcome.plan));
    }
    return remarks;
}

}  // namespace

void WriteRunPage(std::ostream& out, const RunReport& report) {
    FarmPage page;
    page.server = report.server;
    page.farm = &report.before;
    page.after = &report.after;
    page.remarks = RemarksOf(report);
    page.plan = &report.outcome.plan;
    page.calls = report.calls;
    page.output = report.output;
    WriteFarmPage(out, page);
}

}  // namespace embedded::tools
