#include "tools/common/command_line.h"
#include "tools/common/terminal_text.h"
#include "tools/farm_diff/farm_diff.h"
#include "tools/farm_diff/plan_json.h"
#include "tools/farm_diff/plan_text.h"
#include "tools/krvsim/farm_source.h"
#include "tools/krvsim/plan_colours.h"
#include "tools/krvsim/tool.h"
#include "tools/library_reader/farm_copy.h"

namespace embedded::tools {
namespace {

// As of the program diff.
constexpr int kEqual = 0;
constexpr int kDifferent = 1;
constexpr int kTrouble = 2;

struct DiffOptions {
    std::string before;
    std::string after;  // empty = the farm that `before` is a snapshot of, or one that a library shows
    CopyOptions source;
    bool json = false;
};

Farm ReadOther(const DiffOptions& options, const Streams& streams) {
    if (!options.source.library.empty()) {
        FarmCopy copy = CopyFarm(options.source, streams);
        if (copy.unread != 0 && options.source.incomplete == Incomplete::Refused)
            throw ToolFailure("the farm cannot be read completely (--partial-ok accepts that)");
        return std::move(copy.farm);
    }
    if (!options.after.empty()) return ReadFarm(FarmSourceOf(options.after));
    const FarmSource before = FarmSourceOf(options.before);
    if (before.snapshot.empty()) throw UsageFailure("a second farm is missing: name one, or use --library");
    return ReadFarm(FarmSource{before.server, {}});
}

int Compare(const DiffOptions& options, const Streams& streams) {
    const Farm before = ReadFarm(FarmSourceOf(options.before));
    const Farm after = ReadOther(options, streams);
    const Plan plan = CompareFarms(before, after);
    if (options.json) {
        streams.out << PlanObject(plan).dump(2) << '\n';
    } else {
        WritePlan(streams.out, plan, PlanColours());
    }
    return plan.IsEmpty() ? kEqual : kDifferent;
}

int Diff(const DiffOptions& options, const Streams& streams) {
    try {
        return Compare(options, streams);
    } catch (const UsageFailure&) {
        throw;
    } catch (const std::exception& failure) {
        throw ToolFailure(failure.what(), kTrouble);
    }
}

}  // namespace

void AddDiff(CommandLine& line) {
    const auto [app, options] = line.AddWithStatus<DiffOptions>(
        line.GetTool(), "diff", "Show what is different in another farm.", Diff);
    app.add_option("A", options.before, "server, or a snapshot as SERVER@NAME or @NAME")->required();
    CLI::Option* after =
        app.add_option("B", options.after, "the other one; without it, the server that A is a snapshot of");
    CLI::Option* library = app.add_option("--library", options.source.library,
                                          "compare with what this client library (a file) shows");
    app.add_option("--from", options.source.from, "server to read through the library")
        ->capture_default_str()
        ->needs(library);
    after->excludes(library);
    AddCopyOptions(app, *library, options.source);
    app.add_flag("--json", options.json, "one JSON object");
    app.footer("The exit status is 0 for equal farms, 1 for different ones and 2 for trouble.");
}

}  // namespace embedded::tools
