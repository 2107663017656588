#include <charconv>
#include <limits>
#include <system_error>

#include "embedded/farms/servers.h"
#include "embedded/journal/call_info.h"
#include "embedded/simulated/faults.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/journal/call_items.h"
#include "tools/krvsim/fault_request.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

// The columns of ReadFault.
constexpr Sql kFaults = R"sql(
    SELECT id, function, jukebox, magazine, slot, side, drive, volume, skip, times, probability, seed,
        code, text, delay, matched, fired
    FROM fault ORDER BY id
)sql";

struct AddOptions {
    std::string server = ".";
    FaultRequest fault;
};

struct ListOptions {
    std::string server = ".";
};

struct ClearOptions {
    std::string server = ".";
    std::vector<int64_t> faults;  // empty = all
};

void Add(const AddOptions& options, const Streams& streams) {
    const FaultRequest& fault = options.fault;
    RequireValid(fault);
    (void)FunctionOf(fault.function);
    const std::unique_ptr<Database> database = OpenSimulatedServer(options.server);
    int64_t id = 0;
    InTransaction(*database, [&] { id = AddFaultTo(*database, fault); });
    streams.out << "Added fault " << id << ".\n";
    if (fault.code == 0)
        streams.err << "krvsim: warning: krvcmd reports an error with code 0 but ends with exit status 0\n";
}

std::string WhenText(const Fault& fault) {
    const std::string first = "call " + std::to_string(fault.skip + 1);
    std::string text;
    if (!fault.times.has_value()) {
        text = fault.skip == 0 ? "every call" : "from " + first + " on";
    } else {
        text = fault.times == 1 ? first : std::to_string(*fault.times) + " calls from " + first + " on";
    }
    if (fault.probability >= 1) return text;
    std::string percent = std::to_string(fault.probability * 100);
    percent.erase(percent.find_last_not_of('0') + 1);
    if (percent.ends_with('.')) percent.pop_back();
    return text + ", " + percent + "% chance";
}

std::string EffectText(const Fault& fault) {
    std::string text;
    if (fault.delay.count() > 0) text = "wait " + std::to_string(fault.delay.count()) + " ms";
    if (!fault.code.has_value()) return text;
    if (!text.empty()) text += ", ";
    return text + "fail with " + std::to_string(*fault.code) + ": " + fault.text;
}

void List(const ListOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenSimulatedServer(options.server);
    TextTable table({"Fault", "Function", "Item", "When", "Effect", "Calls", "Hits"});
    Statement row(*database, kFaults);
    while (row.Next()) {
        const Fault fault = ReadFault(row);
        const std::string item = ItemText(fault.item);
        table.Add({std::to_string(fault.id), fault.function == kAnyFunction ? "any" : fault.function,
                   item.empty() ? "any" : item, WhenText(fault), EffectText(fault),
                   std::to_string(fault.matched), std::to_string(fault.fired)});
    }
    if (table.HasRows()) {
        table.Write(streams.out);
    } else {
        streams.out << "There are no faults.\n";
    }
}

void Clear(const ClearOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenSimulatedServer(options.server);
    int64_t cleared = 0;
    InTransaction(*database, [&] {
        for (const int64_t fault : options.faults) {
            if (!FindValue<int64_t>(*database, "SELECT id FROM fault WHERE id = ?1", fault).has_value()) {
                throw ToolFailure("there is no fault " + std::to_string(fault));
            }
        }
        const int64_t before = FindValue<int64_t>(*database, "SELECT count(*) FROM fault").value_or(0);
        if (options.faults.empty()) Run(*database, "DELETE FROM fault");
        for (const int64_t fault : options.faults)
            Run(*database, "DELETE FROM fault WHERE id = ?1", fault);
        const int64_t after = FindValue<int64_t>(*database, "SELECT count(*) FROM fault").value_or(0);
        cleared = before - after;
        Run(*database, "UPDATE server SET fault_count = ?1", after);
    });
    streams.out << "Cleared " << Counted(cleared, "fault", "faults") << ".\n";
}

void AddAdd(CommandLine& line, CLI::App& group) {
    const auto [app, options] = line.Add(group, "add", "Add a fault.", Add);
    AddServerOption(app, options.server);
    app.add_option("--function,-f", options.fault.function,
                   "function, such as KrvMediaExport or MediaExport; any stands for all")
        ->required();
    AddItemOptions(app, options.fault.item);
    const CLI::Validator numbers = FromTo(1, std::numeric_limits<int32_t>::max());
    app.add_option("--nth", options.fault.nth, "first matching call to hit")
        ->capture_default_str()
        ->check(numbers);
    app.add_option("--times", options.fault.times, "number of calls to hit; without it, all")->check(numbers);
    app.add_option("--probability", options.fault.probability, "chance to hit each call, from 0 to 1")
        ->capture_default_str()
        ->check([](const std::string& text) {
            double probability = -1;
            const char* const end = text.data() + text.size();
            const auto [stop, error] = std::from_chars(text.data(), end, probability);
            const bool isNumber = error == std::errc{} && stop == end;
            return isNumber && probability >= 0 && probability <= 1
                       ? std::string()
                       : '"' + text + "\" is not a number from 0 to 1";
        });
    app.add_option("--seed", options.fault.seed, "seed of that chance")->capture_default_str();
    app.add_option("--code", options.fault.code, "code to fail with, 0 or more")
        ->check(FromTo(0, std::numeric_limits<int32_t>::max()));
    app.add_option("--text", options.fault.text, "error text, with --code")
        ->check([](const std::string& text) {
            const bool isLong = text.size() > kMaxTextLength;
            return isLong ? "is longer than " + std::to_string(kMaxTextLength) + " bytes" : std::string();
        });
    app.add_option("--delay", options.fault.delay, "time to wait first, such as 250ms, 40s or 5m");
}

}  // namespace

void AddFault(CommandLine& line) {
    CLI::App& group = CommandLine::AddGroup(line.GetTool(), "fault", "Make calls fail or take longer.");
    AddAdd(line, group);
    const auto [list, listOptions] = line.Add(group, "list", "List the faults of a server.", List);
    AddServerOption(list, listOptions.server);
    const auto [clear, clearOptions] =
        line.Add(group, "clear", "Clear the faults with these numbers; without numbers, all of them.", Clear);
    AddServerOption(clear, clearOptions.server);
    clear.add_option("FAULT", clearOptions.faults, "number of a fault");
}

}  // namespace embedded::tools
