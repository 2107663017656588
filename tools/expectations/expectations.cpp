#include "tools/expectations/expectations.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "embedded/journal/call_info.h"
#include "tools/common/streams.h"
#include "tools/expectations/expectation_line.h"

namespace embedded::tools {
namespace {

using Check = std::function<std::optional<std::string>(const Facts&)>;

std::optional<std::string> MustBe(bool holds, const std::string& instead) {
    return holds ? std::nullopt : std::optional(instead);
}

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

constexpr const char* kUnknown = "it is not known here";

// ---- volume ID ...

std::string StateOf(const Farm& farm, const FarmVolume& volume) {
    const auto states = UsualStates(farm);
    const auto usual = states.find(volume.id);
    const int32_t state =
        volume.state.value_or(usual == states.end() ? static_cast<int32_t>(VolumeState::Offline)
                                                    : static_cast<int32_t>(usual->second));
    switch (static_cast<VolumeState>(state)) {
        case VolumeState::Active:
            return "active";
        case VolumeState::Disabled:
            return "disabled";
        case VolumeState::Offline:
            return "offline";
        case VolumeState::Unknown:
            break;
    }
    return "unknown";
}

using OfVolume = std::function<std::optional<std::string>(const Farm&, const FarmVolume&)>;

Check VolumeCheck(int64_t id, OfVolume check) {
    return [id, check = std::move(check)](const Facts& facts) -> std::optional<std::string> {
        const FarmVolume* volume = FindVolume(facts.farm, id);
        if (volume == nullptr) return "there is no volume " + std::to_string(id);
        return check(facts.farm, *volume);
    };
}

// Whether one of the volume's sides lies there.
bool LiesIn(const FarmMedium* medium, int32_t volume) {
    return medium != nullptr &&
           std::ranges::any_of(medium->sides, [&](const FarmSide& side) { return side.volume == volume; });
}

struct SlotWords {
    std::string jukebox;
    int64_t magazine;
    int64_t slot;
};

SlotWords ReadSlot(LineReader& line) {
    SlotWords slot;
    slot.jukebox = line.Word("a jukebox");
    slot.magazine = line.Number("the number of a magazine", 1);
    slot.slot = line.Number("the number of a slot", 1);
    return slot;
}

// The magazine with the slot; throws LineMistake where there is none.
const FarmMagazine& MagazineOf(const Farm& farm, const SlotWords& slot) {
    const FarmJukebox* jukebox = FindJukebox(farm, slot.jukebox);
    if (jukebox == nullptr) throw LineMistake("there is no jukebox " + slot.jukebox);
    const FarmMagazine* magazine = FindMagazine(*jukebox, slot.magazine);
    if (magazine == nullptr) throw LineMistake("there is no magazine " + std::to_string(slot.magazine));
    if (slot.slot > magazine->slotCount) throw LineMistake("there is no slot " + std::to_string(slot.slot));
    return *magazine;
}

Check ReadVolumeLine(LineReader& line) {
    const int64_t id = line.Number("the ID of a volume", 1);
    const std::string property = line.Word("a property of the volume");
    if (property == "absent") {
        return
            [id](const Facts& facts) { return MustBe(FindVolume(facts.farm, id) == nullptr, "it exists"); };
    }
    if (property == "label" || property == "file-system") {
        const std::string text = line.Word("a text");
        const auto member = property == "label" ? &FarmVolume::label : &FarmVolume::fileSystem;
        return VolumeCheck(id, [text, member](const Farm& /*farm*/, const FarmVolume& volume) {
            return MustBe(volume.*member == text, "it is " + Quoted(volume.*member));
        });
    }
    if (property == "directory") {
        const std::string name = line.Word("a directory name");
        return VolumeCheck(id, [name](const Farm& /*farm*/, const FarmVolume& volume) {
            const bool holds = std::ranges::find(volume.directories, name) != volume.directories.end();
            return MustBe(holds, volume.directories.empty() ? "it has none"
                                                            : "it is " + Quoted(volume.directories.front()));
        });
    }
    if (property == "in") {
        const SlotWords slot = ReadSlot(line);
        return VolumeCheck(id, [slot](const Farm& farm, const FarmVolume& volume) {
            const FarmMedium* medium = FindMedium(MagazineOf(farm, slot), slot.slot);
            return MustBe(LiesIn(medium, volume.id),
                          medium == nullptr ? "the slot is empty" : "the slot holds something else");
        });
    }
    if (property == "active" || property == "disabled" || property == "offline") {
        return VolumeCheck(id, [property](const Farm& farm, const FarmVolume& volume) {
            const std::string state = StateOf(farm, volume);
            return MustBe(state == property, "it is " + state);
        });
    }
    throw LineMistake(Quoted(property) +
                      " is none of: label, file-system, directory, in, active, disabled, offline, absent");
}

// ---- slot JUKEBOX MAGAZINE SLOT ...

bool IsBlankMedium(const FarmMedium& medium) {
    return std::ranges::all_of(medium.sides,
                               [](const FarmSide& side) { return side.content == Content::Blank; });
}

Check ReadSlotLine(LineReader& line) {
    const SlotWords slot = ReadSlot(line);
    const std::string property = line.Word("a property of the slot");
    if (property == "volume") {
        const auto volume = static_cast<int32_t>(line.Number("the ID of a volume", 1));
        return [slot, volume](const Facts& facts) {
            const FarmMedium* medium = FindMedium(MagazineOf(facts.farm, slot), slot.slot);
            return MustBe(LiesIn(medium, volume),
                          medium == nullptr ? "it is empty" : "it holds something else");
        };
    }
    if (property == "blank") {
        return [slot](const Facts& facts) {
            const FarmMedium* medium = FindMedium(MagazineOf(facts.farm, slot), slot.slot);
            return MustBe(medium != nullptr && IsBlankMedium(*medium),
                          medium == nullptr ? "it is empty" : "its medium is not blank");
        };
    }
    if (property == "empty" || property == "full" || property == "unknown") {
        return [slot, property](const Facts& facts) {
            const std::string state = SlotStateText(MagazineOf(facts.farm, slot), slot.slot);
            return MustBe(state == property, "it is " + state);
        };
    }
    throw LineMistake(Quoted(property) + " is none of: empty, full, unknown, blank, volume");
}

// ---- jukebox, magazine, drive, waiting, exported

using OfJukebox = std::function<std::optional<std::string>(const FarmJukebox&)>;

Check JukeboxCheck(const std::string& word, OfJukebox check) {
    return [word, check = std::move(check)](const Facts& facts) -> std::optional<std::string> {
        const FarmJukebox* jukebox = FindJukebox(facts.farm, word);
        if (jukebox == nullptr) return "there is no jukebox " + word;
        return check(*jukebox);
    };
}

// Reads one of the two words; true for the first one.
bool ReadOneOf(LineReader& line, const char* first, const char* second) {
    const std::string both = std::string(first) + " or " + second;
    const std::string word = line.Word(both.c_str());
    if (word != first && word != second) throw LineMistake(Quoted(word) + " is not " + both);
    return word == first;
}

Check ReadJukeboxLine(LineReader& line) {
    const std::string jukebox = line.Word("a jukebox");
    const std::string property = line.Word("a property of the jukebox");
    if (property == "absent") {
        return [jukebox](const Facts& facts) {
            return MustBe(FindJukebox(facts.farm, jukebox) == nullptr, "it exists");
        };
    }
    if (property == "name") {
        const std::string name = line.Word("a name");
        return JukeboxCheck(jukebox, [name](const FarmJukebox& found) {
            return MustBe(found.name == name, "it is " + Quoted(found.name));
        });
    }
    if (property != "enabled" && property != "disabled")
        throw LineMistake(Quoted(property) + " is none of: enabled, disabled, name, absent");
    const bool enabled = property == "enabled";
    return JukeboxCheck(jukebox, [enabled](const FarmJukebox& found) {
        return MustBe(found.enabled == enabled, found.enabled ? "it is enabled" : "it is disabled");
    });
}

Check ReadMagazineLine(LineReader& line) {
    const std::string jukebox = line.Word("a jukebox");
    const int64_t number = line.Number("the number of a magazine", 1);
    const bool present = ReadOneOf(line, "present", "absent");
    return JukeboxCheck(jukebox, [number, present](const FarmJukebox& found) -> std::optional<std::string> {
        const FarmMagazine* magazine = FindMagazine(found, number);
        if (magazine == nullptr) return "there is no magazine " + std::to_string(number);
        return MustBe(magazine->present == present, magazine->present ? "it is present" : "it is absent");
    });
}

Check ReadDriveLine(LineReader& line) {
    const std::string jukebox = line.Word("a jukebox");
    const int64_t number = line.Number("the number of a drive", 1);
    const bool enabled = ReadOneOf(line, "enabled", "disabled");
    return JukeboxCheck(jukebox, [number, enabled](const FarmJukebox& found) -> std::optional<std::string> {
        if (number > std::ssize(found.drives)) return "there is no drive " + std::to_string(number);
        const bool isEnabled = found.drives[static_cast<size_t>(number - 1)].enabled;
        return MustBe(isEnabled == enabled, isEnabled ? "it is enabled" : "it is disabled");
    });
}

Check ReadStationLine(LineReader& line, std::vector<FarmMedium> FarmJukebox::*station) {
    const std::string jukebox = line.Word("a jukebox");
    const int64_t count = line.Number("a number of media");
    return JukeboxCheck(jukebox, [count, station](const FarmJukebox& found) {
        const std::ptrdiff_t size = std::ssize(found.*station);
        return MustBe(size == count, "there are " + std::to_string(size));
    });
}

Check ReadWaitingLine(LineReader& line) {
    return ReadStationLine(line, &FarmJukebox::waiting);
}

Check ReadExportedLine(LineReader& line) {
    return ReadStationLine(line, &FarmJukebox::exported);
}

// ---- what a run did

// The functions that krvcmd's commands are named after.
std::string FunctionOf(const std::string& word) {
    constexpr std::pair<std::string_view, std::string_view> kCommands[] = {
        {"import", "KrvMediaImport"},  {"export", "KrvMediaExport"}, {"scan", "KrvMediaScan"},
        {"format", "KrvVolumeFormat"}, {"erase", "KrvVolumeErase"},  {"finalize", "KrvVolumeFinalize"},
    };
    for (const auto& [command, function] : kCommands) {
        if (word == command) return std::string(function);
    }
    const std::string_view function = FindFunction(word);
    if (function.empty()) throw LineMistake(Quoted(word) + " is not a function");
    return std::string(function);
}

Check ReadCallsLine(LineReader& line) {
    std::string which;
    if (!line.NextIsNumber()) which = line.Word("a function or a number of calls");
    if (!which.empty() && which != "failed") which = FunctionOf(which);
    const int64_t count = line.Number("a number of calls");
    return [which, count](const Facts& facts) -> std::optional<std::string> {
        if (!facts.calls.has_value()) return kUnknown;
        int64_t made = facts.calls->all;
        if (which == "failed") made = facts.calls->failed;
        if (which != "failed" && !which.empty()) {
            const auto found = facts.calls->byFunction.find(which);
            made = found == facts.calls->byFunction.end() ? 0 : found->second;
        }
        return MustBe(made == count, "there were " + std::to_string(made));
    };
}

Check ReadChangesLine(LineReader& line) {
    std::optional<ChangeKind> kind;
    if (!line.NextIsNumber()) {
        const std::string word = line.Word("a kind or a number of changes");
        kind = FindChange(word);
        if (!kind.has_value()) throw LineMistake(Quoted(word) + " is not a kind of change");
    }
    const int64_t count = line.Number("a number of changes");
    return [kind, count](const Facts& facts) -> std::optional<std::string> {
        if (facts.plan == nullptr) return kUnknown;
        int64_t made = 0;
        for (const auto& [each, number] : CountChanges(*facts.plan)) {
            if (!kind.has_value() || *kind == each) made += number;
        }
        return MustBe(made == count, "there were " + std::to_string(made));
    };
}

Check ReadStatusLine(LineReader& line) {
    const int64_t status = line.Number("an exit status");
    return [status](const Facts& facts) -> std::optional<std::string> {
        if (!facts.status.has_value()) return kUnknown;
        return MustBe(*facts.status == status, "it was " + std::to_string(*facts.status));
    };
}

struct Subject {
    std::string_view word;
    Check (*read)(LineReader&);
};
constexpr Subject kSubjects[] = {
    {"volume", ReadVolumeLine},     {"slot", ReadSlotLine},       {"jukebox", ReadJukeboxLine},
    {"magazine", ReadMagazineLine}, {"drive", ReadDriveLine},     {"waiting", ReadWaitingLine},
    {"exported", ReadExportedLine}, {"changes", ReadChangesLine}, {"calls", ReadCallsLine},
    {"status", ReadStatusLine},
};

Check ReadLine(LineReader& line) {
    const std::string word = line.Word("a subject");
    const auto* const subject = std::ranges::find(kSubjects, word, &Subject::word);
    if (subject == std::end(kSubjects)) {
        std::string known;
        for (const Subject& each : kSubjects)
            known.append(known.empty() ? "" : ", ").append(each.word);
        throw LineMistake(Quoted(word) + " is none of: " + known);
    }
    Check check = subject->read(line);
    line.End();
    return check;
}

}  // namespace

std::vector<Expectation> ReadExpectations(std::istream& input, const std::string& name) {
    std::vector<Expectation> expectations;
    std::string mistakes;
    std::string text;
    for (int number = 1; std::getline(input, text); ++number) {
        if (text.ends_with('\r')) text.pop_back();
        try {
            std::vector<std::string> words = SplitLine(text);
            if (words.empty()) continue;
            LineReader line(std::move(words));
            expectations.push_back({number, text, ReadLine(line)});
        } catch (const LineMistake& mistake) {
            mistakes +=
                (mistakes.empty() ? "" : "\n") + name + ":" + std::to_string(number) + ": " + mistake.what();
        }
    }
    if (!mistakes.empty()) throw ToolFailure(mistakes);
    return expectations;
}

std::vector<Expectation> ReadExpectationFile(const std::string& file) {
    std::error_code failure;
    std::ifstream input(file, std::ios::binary);
    if (!input.is_open() || std::filesystem::is_directory(file, failure))
        throw ToolFailure(file + ": cannot be read");
    return ReadExpectations(input, file);
}

std::string FailureText(const std::string& file, const ExpectationResult& result) {
    return file + ":" + std::to_string(result.line) + ": " + result.text + ": " +
           result.failure.value_or("it holds");
}

std::vector<ExpectationResult> CheckExpectations(const std::vector<Expectation>& expectations,
                                                 const Facts& facts) {
    std::vector<ExpectationResult> results;
    for (const Expectation& expectation : expectations) {
        ExpectationResult result{expectation.line, expectation.text, std::nullopt};
        try {
            result.failure = expectation.check(facts);
        } catch (const LineMistake& mistake) {
            result.failure = mistake.what();
        }
        results.push_back(std::move(result));
    }
    return results;
}

}  // namespace embedded::tools
