#include "tools/krvsim/each_fault.h"

#include <algorithm>
#include <filesystem>

#include "embedded/store/farm_file.h"
#include "embedded/store/statement.h"
#include "tools/common/long_task.h"
#include "tools/common/plain_text.h"
#include "tools/farm_diff/plan_text.h"
#include "tools/journal/call_items.h"
#include "tools/krvsim/fault_request.h"

namespace embedded::tools {
namespace {

FaultRun RunWithFault(const EachFault& options, const SweepStart& start, const CallOfRun& call) {
    if (InterruptGuard::IsInterrupted()) throw ToolFailure("interrupted");
    const PrivateCopy copy(start.server, start.library);
    std::error_code failure;
    std::filesystem::copy_file(start.baseline, copy.GetFarm(), failure);
    if (failure) throw ToolFailure("cannot copy the farm: " + failure.message());
    int64_t fault = 0;
    {
        const std::unique_ptr<Database> database = OpenFarmAt(copy.GetFarm());
        FaultRequest request;
        request.function = call.function;
        request.nth = call.nth;
        request.times = 1;
        request.code = options.code;
        request.text = "Call " + std::to_string(call.nth) + " of " + call.function + " was made to fail.";
        InTransaction(*database, [&] { fault = AddFaultTo(*database, request); });
    }
    FaultRun run;
    run.call = call;
    run.outcome =
        Rehearse(copy, {start.words, start.isolation, copy.GetOutput(), nullptr}, start.farm).outcome;
    const std::unique_ptr<Database> database = OpenFarmAt(copy.GetFarm());
    run.isReached = FindValue<int64_t>(*database, "SELECT fired FROM fault WHERE id = ?1", fault) == 1;
    return run;
}

std::string ResultText(const FaultRun& run) {
    if (!run.isReached) return "not reached";
    return run.IsSwallowed() ? "swallowed" : "noticed";
}

std::string NameOf(const CallOfRun& call) {
    return call.function + " " + std::to_string(call.nth);
}

}  // namespace

std::vector<FaultRun> RunEachFault(const EachFault& options, const SweepStart& start, Database& first,
                                   const Streams& streams) {
    const std::string function = options.function.empty() ? std::string() : FunctionOf(options.function);
    const std::vector<CallOfRun> calls =
        ListCalls(first, function, [](const StoredJournalEntry& entry) { return ItemText(entry.item); });
    const InterruptGuard guard;
    Progress progress(streams.err, "repeating the run", std::ssize(calls));
    return SweepFaults(
        calls, [&](const CallOfRun& call) { return RunWithFault(options, start, call); },
        [&] { progress.Step(); });
}

void WriteFaultRuns(std::ostream& out, const std::vector<FaultRun>& runs) {
    TextTable table({"Failing call", "Item", "Status", "Result", "Afterwards"});
    for (const FaultRun& run : runs) {
        table.Add({NameOf(run.call), run.call.item.empty() ? "-" : run.call.item,
                   std::to_string(run.outcome.status), ResultText(run), CountText(run.outcome.plan)});
    }
    if (table.HasRows()) table.Write(out);
    const auto swallowed = std::ranges::count_if(runs, &FaultRun::IsSwallowed);
    out << Counted(std::ssize(runs), "call", "calls") << " made to fail; " << swallowed
        << " of the failures swallowed.\n";
}

}  // namespace embedded::tools
