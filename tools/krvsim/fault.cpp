#include <charconv>
#include <limits>

#include "embedded/farms/servers.h"
#include "embedded/journal/call_info.h"
#include "embedded/simulated/faults.h"
#include "embedded/store/statement.h"
#include "tools/common/command_line.h"
#include "tools/common/plain_text.h"
#include "tools/krvsim/call_items.h"
#include "tools/krvsim/tool.h"

namespace embedded::tools {
namespace {

constexpr const char* kAnyFunction = "*";
constexpr const char* kDefaultText = "A fault made the call fail.";
constexpr size_t kMaxTextLength = sizeof(KrvErrorInfo::text) - 1;

constexpr Sql kAddFault = R"sql(
    INSERT INTO fault (function, jukebox, magazine, slot, side, drive, volume, skip, times, probability, seed,
        code, text, delay, matched, fired)
    VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, 0, 0)
    RETURNING id
)sql";

// The columns of ReadFault.
constexpr Sql kFaults = R"sql(
    SELECT id, function, jukebox, magazine, slot, side, drive, volume, skip, times, probability, seed,
        code, text, delay, matched, fired
    FROM fault ORDER BY id
)sql";

struct AddOptions {
    std::string server = ".";
    std::string function;  // "any" = every one
    ItemOptions item;
    int64_t nth = 1;               // the first matching call that fails or waits, one-based
    std::optional<int64_t> times;  // how many do; nothing = all
    double probability = 1;
    int64_t seed = 1;
    std::optional<int32_t> code;
    std::string text;
    std::string delay;  // a number and ms, s or m
};

struct ListOptions {
    std::string server = ".";
};

struct ClearOptions {
    std::string server = ".";
    std::vector<int64_t> faults;  // empty = all
};

std::string FunctionOf(const std::string& word) {
    if (word == "any") return kAnyFunction;
    const std::string_view function = FindFunction(word);
    if (!function.empty()) return std::string(function);
    std::string message = "unknown function \"" + word + "\"; the functions are:";
    for (const std::string_view known : FunctionNames())
        message.append("\n  ").append(known);
    throw ToolFailure(message);
}

// "250ms", "40s", "5m"; an empty text is no delay.
int64_t MillisecondsOf(const std::string& delay) {
    if (delay.empty()) return 0;
    int64_t number = 0;
    const char* end = delay.data() + delay.size();
    const auto result = std::from_chars(delay.data(), end, number);
    const std::string_view unit(result.ptr, static_cast<size_t>(end - result.ptr));
    constexpr int64_t kMaxMilliseconds = 24LL * 60 * 60 * 1000;
    int64_t factor = 0;
    if (unit == "ms") factor = 1;
    if (unit == "s") factor = 1000;
    if (unit == "m") factor = 60'000;
    if (result.ec != std::errc() || factor == 0 || number < 0 || number > kMaxMilliseconds / factor) {
        throw UsageFailure("--delay: \"" + delay +
                           "\" is not a time such as 250ms, 40s or 5m of at most 24 hours");
    }
    return number * factor;
}

void Add(const AddOptions& options, const Streams& streams) {
    const int64_t delay = MillisecondsOf(options.delay);
    if (!options.code.has_value() && delay == 0) throw UsageFailure("--code or --delay is required");
    if (!options.text.empty() && !options.code.has_value()) throw UsageFailure("--text requires --code");
    const bool isDefaultText = options.code.has_value() && options.text.empty();
    const std::string text = isDefaultText ? kDefaultText : options.text;
    const std::string function = FunctionOf(options.function);
    const std::unique_ptr<Database> database = OpenServer(options.server);
    int64_t id = 0;
    InTransaction(*database, [&] {
        const Item item = ItemOf(options.item, *database);
        id = FindValue<int64_t>(*database, kAddFault, function, item.jukebox, item.magazine, item.slot,
                                item.side, item.drive, item.volume, options.nth - 1, options.times,
                                options.probability, options.seed, options.code, text, delay)
                 .value_or(0);
        Run(*database, "UPDATE server SET fault_count = fault_count + 1");
    });
    streams.out << "Added fault " << id << ".\n";
    if (options.code == 0)
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
    const std::unique_ptr<Database> database = OpenServer(options.server);
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
    const std::unique_ptr<Database> database = OpenServer(options.server);
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
    app.add_option("--function,-f", options.function,
                   "function, such as KrvMediaExport or MediaExport; any stands for all")
        ->required();
    AddItemOptions(app, options.item);
    const CLI::Validator numbers = FromTo(1, std::numeric_limits<int32_t>::max());
    app.add_option("--nth", options.nth, "first matching call to hit")->capture_default_str()->check(numbers);
    app.add_option("--times", options.times, "number of calls to hit; without it, all")->check(numbers);
    app.add_option("--probability", options.probability, "chance to hit each call, from 0 to 1")
        ->capture_default_str()
        ->check([](const std::string& text) {
            double probability = -1;
            const bool isNumber = CLI::detail::lexical_cast(text, probability);
            return isNumber && probability >= 0 && probability <= 1 ? std::string()
                                                                    : text + " is not from 0 to 1";
        });
    app.add_option("--seed", options.seed, "seed of that chance")->capture_default_str();
    app.add_option("--code", options.code, "code to fail with, 0 or more")
        ->check(FromTo(0, std::numeric_limits<int32_t>::max()));
    app.add_option("--text", options.text, "error text, with --code")->check([](const std::string& text) {
        const bool isLong = text.size() > kMaxTextLength;
        return isLong ? "is longer than " + std::to_string(kMaxTextLength) + " bytes" : std::string();
    });
    app.add_option("--delay", options.delay, "time to wait first, such as 250ms, 40s or 5m");
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
