#include "tests/reliability/support/command_spec.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace krvcmd::reliability {
namespace {

struct VerbWords {
    Verb verb;
    const char* command;
    const char* parameter;  // null for none
};

constexpr VerbWords kVerbs[] = {{Verb::Import, "import", nullptr},    {Verb::Export, "export", nullptr},
                                {Verb::Scan, "scan", nullptr},        {Verb::Format, "format", nullptr},
                                {Verb::Enable, "enable", nullptr},    {Verb::Disable, "disable", nullptr},
                                {Verb::Name, "name", nullptr},        {Verb::Query, "query", nullptr},
                                {Verb::Start, "service", "start"},    {Verb::Stop, "service", "stop"},
                                {Verb::Restart, "service", "restart"}};

// Abbreviations that are unique among the command's parameters.
struct Abbreviation {
    std::string_view keyword;
    std::string_view shortest;
};

constexpr Abbreviation kAbbreviations[] = {
    {"repeat", "rep"},     {"label", "la"},   {"erase", "er"},     {"certify", "cer"},
    {"sequential", "seq"}, {"columns", "co"}, {"separator", "se"}, {"width", "wid"},
    {"finalize", "fi"},    {"sort", "so"},    {"notable", "not"},  {"jukeboxes", "jukebox"},
    {"volumes", "vo"},     {"drives", "dr"},  {"slots", "slot"},   {"magazines", "mag"}};

const char* ObjectKeyword(Object object) {
    switch (object) {
        case Object::Jukeboxes:
            return "jukeboxes";
        case Object::Magazines:
            return "magazines";
        case Object::Drives:
            return "drives";
        case Object::Slots:
            return "slots";
        case Object::Volumes:
            return "volumes";
        case Object::None:
            break;
    }
    return nullptr;
}

std::string ListText(const std::vector<Numbers>& list, std::string_view sign) {
    std::string text(sign);
    for (const Numbers& numbers : list) {
        if (&numbers != &list.front()) text += ',';
        text += std::to_string(numbers.from);
        if (numbers.isRange) text += '-' + std::to_string(numbers.to);
    }
    return text;
}

// One parameter with its value. A value that begins with a letter cannot follow the keyword directly.
struct Phrase {
    std::string keyword;
    std::optional<std::string> value{};
    bool isText = false;
};

std::vector<std::string> Spell(const Phrase& phrase, RandomNumbers* random) {
    std::string keyword = phrase.keyword;
    if (random != nullptr && random->OneIn(3)) {
        for (const Abbreviation& entry : kAbbreviations) {
            if (entry.keyword == keyword) keyword = entry.shortest;
        }
    }
    if (!phrase.value) return {keyword};
    const size_t form = random == nullptr ? 0 : random->Below(phrase.isText ? 3 : 4);
    switch (form) {
        case 1:
            return {keyword, *phrase.value};
        case 2:
            return {keyword, "=" + *phrase.value};
        case 3:
            return {keyword + *phrase.value};
        default:
            return {keyword + "=" + *phrase.value};
    }
}

std::vector<Phrase> AddressPhrases(const CommandSpec& command) {
    std::vector<Phrase> phrases;
    if (command.jukeboxId) {
        phrases.push_back({"J", "@" + std::to_string(*command.jukeboxId)});
    } else if (!command.jukeboxName.empty()) {
        phrases.push_back({"J", command.jukeboxName, true});
    }
    if (!command.magazines.empty()) phrases.push_back({"M", ListText(command.magazines, "")});
    if (!command.slots.empty()) phrases.push_back({"S", ListText(command.slots, "")});
    if (!command.volumes.empty()) phrases.push_back({"V", ListText(command.volumes, "@")});
    if (command.drive) phrases.push_back({"D", std::to_string(*command.drive)});
    if (command.sideA) phrases.push_back({".A"});
    if (command.sideB) phrases.push_back({".B"});
    return phrases;
}

std::vector<Phrase> OptionPhrases(const CommandSpec& command) {
    std::vector<Phrase> phrases;
    const auto addText = [&](const char* keyword, const std::optional<std::string>& value) {
        if (value) phrases.push_back({keyword, value, true});
    };
    const auto addFlag = [&](const char* keyword, bool given) {
        if (given) phrases.push_back({keyword});
    };
    if (command.repeat) phrases.push_back({"repeat", std::to_string(*command.repeat)});
    addText("label", command.label);
    addFlag("erase", command.erase);
    addFlag("certify", command.certify);
    addFlag("sequential", command.sequential);
    addFlag("finalize", command.finalize);
    addText("columns", command.columns);
    addText("sort", command.sort);
    addText("separator", command.separator);
    if (command.width) phrases.push_back({"width", std::to_string(*command.width)});
    addFlag("notable", command.notable);
    if (const char* keyword = ObjectKeyword(command.object)) phrases.push_back({keyword});
    return phrases;
}

std::vector<std::string> SpellCommand(const CommandSpec& command, RandomNumbers* random) {
    std::vector<std::string> words;
    if (command.quiet) words.emplace_back("quiet");
    if (!command.server.empty()) words.push_back("server=" + command.server);
    const auto* const verb =
        std::ranges::find_if(kVerbs, [&](const VerbWords& entry) { return entry.verb == command.verb; });
    words.emplace_back(verb->command);
    if (verb->parameter != nullptr) words.emplace_back(verb->parameter);

    std::vector<Phrase> phrases = AddressPhrases(command);
    for (Phrase& phrase : OptionPhrases(command))
        phrases.push_back(std::move(phrase));
    for (size_t i = phrases.size(); random != nullptr && i > 1; --i) {
        std::swap(phrases[i - 1], phrases[random->Below(i)]);
    }
    for (const Phrase& phrase : phrases) {
        for (std::string& word : Spell(phrase, random))
            words.push_back(std::move(word));
    }
    if (command.newName) words.push_back(*command.newName);
    return words;
}

}  // namespace

std::vector<std::string> Words(const CommandSpec& command) {
    return SpellCommand(command, nullptr);
}

std::vector<std::string> Words(const CommandSpec& command, RandomNumbers& random) {
    return SpellCommand(command, &random);
}

std::string CommandLineText(const std::vector<std::string>& words) {
    std::string text = "krvcmd";
    for (const std::string& word : words)
        text += " '" + word + "'";
    return text;
}

}  // namespace krvcmd::reliability
