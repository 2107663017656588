#include "tools/krvsim/fault_request.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

#include "embedded/journal/call_info.h"
#include "embedded/store/statement.h"
#include "tools/common/streams.h"
#include "tools/expectations/expectation_line.h"

namespace embedded::tools {
namespace {

constexpr const char* kDefaultText = "A fault made the call fail.";

constexpr Sql kAddFault = R"sql(
    INSERT INTO fault (function, jukebox, magazine, slot, side, drive, volume, skip, times, probability, seed,
        code, text, delay, matched, fired)
    VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, 0, 0)
    RETURNING id
)sql";

struct Preset {
    std::string_view name;
    std::string_view lines;
};
constexpr Preset kPresets[] = {
    {"door-open",
     "MediaImport code 7 text \"The door of the jukebox is open.\"\n"
     "MediaExport code 7 text \"The door of the jukebox is open.\"\n"},
    {"drive-dead",
     "MediaScan code 99 text \"The drive does not respond.\"\n"
     "VolumeFormat code 99 text \"The drive does not respond.\"\n"
     "VolumeErase code 99 text \"The drive does not respond.\"\n"
     "VolumeFinalize code 99 text \"The drive does not respond.\"\n"},
    {"disc-unreadable",
     "MediaScan code 3 text \"The disc cannot be read.\"\n"
     "VolumeFormat code 3 text \"The disc cannot be read.\"\n"},
    {"service-away", "any code 99 text \"The service does not answer.\"\n"},
    {"slow-robot",
     "MediaImport delay 2s\n"
     "MediaExport delay 2s\n"
     "MediaScan delay 2s\n"},
};

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

void ReadPart(LineReader& line, FaultRequest& fault) {
    const std::string key = line.Word("a word");
    const auto number = [&](const char* what, int64_t lowest = 1) {
        return static_cast<int32_t>(line.Number(what, lowest));
    };
    if (key == "jukebox") {
        fault.item.jukebox = line.Word("a jukebox");
    } else if (key == "magazine") {
        fault.item.magazine = number("the number of a magazine");
    } else if (key == "slot") {
        fault.item.slot = number("the number of a slot");
    } else if (key == "side") {
        fault.item.side = line.Word("a side");
        if (fault.item.side != "A" && fault.item.side != "B")
            throw LineMistake("\"" + fault.item.side + "\" is not A or B");
    } else if (key == "drive") {
        fault.item.drive = number("the number of a drive");
    } else if (key == "volume") {
        fault.item.volume = number("the ID of a volume");
    } else if (key == "nth") {
        fault.nth = number("the number of a call");
    } else if (key == "times") {
        fault.times = number("a number of calls");
    } else if (key == "code") {
        fault.code = number("a code", 0);
    } else if (key == "text") {
        fault.text = line.Word("a text");
    } else if (key == "delay") {
        fault.delay = line.Word("a time");
    } else {
        throw LineMistake("\"" + key +
                          "\" is none of: jukebox, magazine, slot, side, drive, volume, nth, times, code, "
                          "text, delay");
    }
}

FaultRequest ReadFault(LineReader& line) {
    FaultRequest fault;
    fault.function = line.Word("a function");
    if (fault.function != "any" && FindFunction(fault.function).empty())
        throw LineMistake("\"" + fault.function + "\" is not a function");
    while (line.HasMore())
        ReadPart(line, fault);
    if (fault.text.size() > kMaxTextLength)
        throw LineMistake("the text is longer than " + std::to_string(kMaxTextLength) + " bytes");
    try {
        RequireValid(fault);
    } catch (const UsageFailure& failure) {
        throw LineMistake(failure.what());
    }
    return fault;
}

std::vector<FaultRequest> ReadLines(std::istream& input, const std::string& name) {
    std::vector<FaultRequest> faults;
    std::string mistakes;
    std::string text;
    for (int number = 1; std::getline(input, text); ++number) {
        try {
            std::vector<std::string> words = SplitLine(text);
            if (words.empty()) continue;
            LineReader line(std::move(words));
            faults.push_back(ReadFault(line));
        } catch (const LineMistake& mistake) {
            mistakes +=
                (mistakes.empty() ? "" : "\n") + name + ":" + std::to_string(number) + ": " + mistake.what();
        }
    }
    if (!mistakes.empty()) throw ToolFailure(mistakes);
    return faults;
}

}  // namespace

std::string FunctionOf(const std::string& word) {
    if (word == "any") return kAnyFunction;
    const std::string_view function = FindFunction(word);
    if (!function.empty()) return std::string(function);
    std::string message = "unknown function \"" + word + "\"; the functions are:";
    for (const std::string_view known : FunctionNames())
        message.append("\n  ").append(known);
    throw ToolFailure(message);
}

void RequireValid(const FaultRequest& fault) {
    const int64_t delay = MillisecondsOf(fault.delay);
    if (!fault.code.has_value() && delay == 0) throw UsageFailure("--code or --delay is required");
    if (!fault.text.empty() && !fault.code.has_value()) throw UsageFailure("--text requires --code");
}

int64_t AddFaultTo(Database& database, const FaultRequest& fault) {
    const bool isDefaultText = fault.code.has_value() && fault.text.empty();
    const std::string text = isDefaultText ? kDefaultText : fault.text;
    const Item item = ItemOf(fault.item, database);
    const auto id =
        FindValue<int64_t>(database, kAddFault, FunctionOf(fault.function), item.jukebox, item.magazine,
                           item.slot, item.side, item.drive, item.volume, fault.nth - 1, fault.times,
                           fault.probability, fault.seed, fault.code, text, MillisecondsOf(fault.delay));
    Run(database, "UPDATE server SET fault_count = fault_count + 1");
    return id.value_or(0);
}

std::vector<FaultRequest> ReadFaults(const std::string& word) {
    const auto* const preset = std::ranges::find(kPresets, word, &Preset::name);
    if (preset != std::end(kPresets)) {
        std::istringstream lines{std::string(preset->lines)};
        return ReadLines(lines, word);
    }
    std::error_code ignored;
    if (std::filesystem::is_regular_file(word, ignored)) {
        std::ifstream file(word, std::ios::binary);
        if (!file.is_open()) throw ToolFailure(word + ": cannot be read");
        return ReadLines(file, word);
    }
    std::istringstream line(word);
    try {
        return ReadLines(line, "--fault");
    } catch (const ToolFailure& failure) {
        throw ToolFailure(std::string(failure.what()) + "\n\"" + word +
                          "\" is neither a fault nor a file; the presets are: " + PresetNames());
    }
}

std::string PresetNames() {
    std::string names;
    for (const Preset& preset : kPresets)
        names.append(names.empty() ? "" : ", ").append(preset.name);
    return names;
}

}  // namespace embedded::tools
