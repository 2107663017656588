// krvsim fault: calls that shall fail or take long.
#include <charconv>

#include "embedded/calls/call_info.h"
#include "embedded/farms/servers.h"
#include "embedded/store/transaction.h"
#include "tools/common/command.h"
#include "tools/common/text_table.h"
#include "tools/krvsim/commands.h"
#include "tools/krvsim/farm_query.h"
#include "tools/krvsim/item_words.h"

namespace embedded::tools {
namespace {

constexpr const char* kUsualText = "The call was told to fail.";

std::string FunctionOf(const std::string& word) {
    if (word == "any") return "*";
    const std::string_view function = FindFunction(word);
    if (!function.empty()) return std::string(function);
    std::string message = "there is no function \"" + word + "\"; the functions are:";
    for (const std::string_view known : FunctionNames())
        message.append("\n  ").append(known);
    throw ToolFailure(message);
}

// "250ms", "40s", "5m"; nothing at all is no delay.
int64_t MillisecondsOf(const std::string& delay) {
    if (delay.empty()) return 0;
    int64_t number = 0;
    const char* end = delay.data() + delay.size();
    const auto result = std::from_chars(delay.data(), end, number);
    const std::string_view unit(result.ptr, static_cast<size_t>(end - result.ptr));
    constexpr int64_t kMost = 24LL * 60 * 60 * 1000;
    int64_t factor = 0;
    if (unit == "ms") factor = 1;
    if (unit == "s") factor = 1000;
    if (unit == "m") factor = 60'000;
    if (result.ec != std::errc() || factor == 0 || number < 0 || number > kMost / factor) {
        throw UsageFailure("--delay: \"" + delay + "\" is no time like 250ms, 40s or 5m, up to a day");
    }
    return number * factor;
}

std::optional<int64_t> ZeroBased(const std::optional<int32_t>& number) {
    return number.has_value() ? std::optional<int64_t>(*number - 1) : std::nullopt;
}

std::optional<int64_t> SideNumber(const std::string& side) {
    if (side.empty()) return std::nullopt;
    return side == "A" ? 0 : 1;
}

std::string WhenText(const Row& row) {
    const int64_t skip = row.Integer(8);
    std::string text;
    if (row.IsNull(9)) {
        text = skip == 0 ? "every call" : "from call " + std::to_string(skip + 1) + " on";
    } else if (row.Integer(9) == 1) {
        text = "call " + std::to_string(skip + 1);
    } else {
        text = std::to_string(row.Integer(9)) + " calls from call " + std::to_string(skip + 1) + " on";
    }
    if (row.Real(10) >= 1) return text;
    std::string percent = std::to_string(row.Real(10) * 100);
    percent.erase(percent.find_last_not_of('0') + 1);
    if (percent.ends_with('.')) percent.pop_back();
    return text + ", by a chance of " + percent + "%";
}

std::string EffectText(const Row& row) {
    std::string text;
    if (row.Integer(14) > 0) text = "wait " + std::to_string(row.Integer(14)) + " ms";
    if (row.IsNull(12)) return text;
    if (!text.empty()) text += ", ";
    return text + "fail with " + std::to_string(row.Integer(12)) + ": " + row.Text(13);
}

}  // namespace

void FaultAdd(const FaultAddOptions& options, const Streams& streams) {
    const int64_t delay = MillisecondsOf(options.delay);
    if (!options.code.has_value() && delay == 0) throw UsageFailure("one of --code and --delay is needed");
    if (!options.text.empty() && !options.code.has_value()) throw UsageFailure("--text needs a --code");
    const std::string function = FunctionOf(options.function);
    const std::unique_ptr<Database> database = OpenServer(options.server);
    int64_t id = 0;
    InTransaction(*database, [&] {
        const FaultItem& item = options.item;
        std::optional<int64_t> jukebox;
        if (!item.jukebox.empty()) jukebox = FindJukebox(*database, item.jukebox);
        Execute(*database,
                "INSERT INTO fault (function, jukebox, magazine, slot, side, drive, volume, skip, times, "
                "probability, "
                "seed, code, text, delay, matched, fired) "
                "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, 0, 0)",
                {function, OptionalValue(jukebox), OptionalValue(ZeroBased(item.magazine)),
                 OptionalValue(ZeroBased(item.slot)), OptionalValue(SideNumber(item.side)),
                 OptionalValue(ZeroBased(item.drive)), OptionalValue(item.volume), options.nth - 1,
                 OptionalValue(options.times), options.probability, options.seed, OptionalValue(options.code),
                 options.text.empty() && options.code.has_value() ? std::string(kUsualText) : options.text,
                 delay});
        id = sqlite3_last_insert_rowid(database->GetConnection());
        Execute(*database, "UPDATE server SET fault_count = fault_count + 1", {});
    });
    streams.out << "Fault " << id << " is set.\n";
}

void FaultList(const FaultListOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenServer(options.server);
    TextTable table({"Fault", "Function", "Item", "When", "Effect", "Calls", "Struck"});
    bool isEmpty = true;
    ForEachRow(
        *database,
        "SELECT id, function, jukebox, magazine, slot, side, drive, volume, skip, times, probability, seed, "
        "code, text, delay, matched, fired FROM fault ORDER BY id",
        {}, [&](const Row& row) {
            isEmpty = false;
            const std::string function = row.Text(1);
            table.Add({std::to_string(row.Integer(0)), function == "*" ? "any" : function,
                       ItemWords(ItemOfRow(row, 2), "any"), WhenText(row), EffectText(row),
                       std::to_string(row.Integer(15)), std::to_string(row.Integer(16))});
        });
    if (isEmpty) {
        streams.out << "There are no faults.\n";
    } else {
        table.Write(streams.out);
    }
}

void FaultClear(const FaultClearOptions& options, const Streams& streams) {
    const std::unique_ptr<Database> database = OpenServer(options.server);
    int64_t cleared = 0;
    InTransaction(*database, [&] {
        for (const int64_t fault : options.faults) {
            if (!FindNumber(*database, "SELECT id FROM fault WHERE id = ?1", {fault}).has_value()) {
                throw ToolFailure("there is no fault " + std::to_string(fault));
            }
        }
        const int64_t before = *FindNumber(*database, "SELECT count(*) FROM fault", {});
        if (options.faults.empty()) Execute(*database, "DELETE FROM fault", {});
        for (const int64_t fault : options.faults)
            Execute(*database, "DELETE FROM fault WHERE id = ?1", {fault});
        const int64_t after = *FindNumber(*database, "SELECT count(*) FROM fault", {});
        cleared = before - after;
        Execute(*database, "UPDATE server SET fault_count = ?1", {after});
    });
    streams.out << "Cleared " << cleared << (cleared == 1 ? " fault.\n" : " faults.\n");
}

}  // namespace embedded::tools
