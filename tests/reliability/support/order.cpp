#include "tests/reliability/support/order.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace krvcmd::reliability {
namespace {

struct VerbWords {
    Verb verb;
    const char* command;
    const char* parameter;  // null: none
};

constexpr VerbWords kVerbs[] = {{Verb::Import, "import", nullptr},    {Verb::Export, "export", nullptr},
                                {Verb::Scan, "scan", nullptr},        {Verb::Format, "format", nullptr},
                                {Verb::Enable, "enable", nullptr},    {Verb::Disable, "disable", nullptr},
                                {Verb::Name, "name", nullptr},        {Verb::Query, "query", nullptr},
                                {Verb::Start, "service", "start"},    {Verb::Stop, "service", "stop"},
                                {Verb::Restart, "service", "restart"}};

// Leading parts that are still unique among the command's parameters.
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

std::vector<std::string> Spell(const Phrase& phrase, Dice* dice) {
    std::string keyword = phrase.keyword;
    if (dice != nullptr && dice->OneIn(3)) {
        for (const Abbreviation& entry : kAbbreviations) {
            if (entry.keyword == keyword) keyword = entry.shortest;
        }
    }
    if (!phrase.value) return {keyword};
    const size_t form = dice == nullptr ? 0 : dice->Below(phrase.isText ? 3 : 4);
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

std::vector<Phrase> AddressPhrases(const Order& order) {
    std::vector<Phrase> phrases;
    if (order.jukeboxId) {
        phrases.push_back({"J", "@" + std::to_string(*order.jukeboxId)});
    } else if (!order.jukeboxName.empty()) {
        phrases.push_back({"J", order.jukeboxName, true});
    }
    if (!order.magazines.empty()) phrases.push_back({"M", ListText(order.magazines, "")});
    if (!order.slots.empty()) phrases.push_back({"S", ListText(order.slots, "")});
    if (!order.volumes.empty()) phrases.push_back({"V", ListText(order.volumes, "@")});
    if (order.drive) phrases.push_back({"D", std::to_string(*order.drive)});
    if (order.sideA) phrases.push_back({".A"});
    if (order.sideB) phrases.push_back({".B"});
    return phrases;
}

std::vector<Phrase> OptionPhrases(const Order& order) {
    std::vector<Phrase> phrases;
    const auto addText = [&](const char* keyword, const std::optional<std::string>& value) {
        if (value) phrases.push_back({keyword, value, true});
    };
    const auto addFlag = [&](const char* keyword, bool given) {
        if (given) phrases.push_back({keyword});
    };
    if (order.repeat) phrases.push_back({"repeat", std::to_string(*order.repeat)});
    addText("label", order.label);
    addFlag("erase", order.erase);
    addFlag("certify", order.certify);
    addFlag("sequential", order.sequential);
    addFlag("finalize", order.finalize);
    addText("columns", order.columns);
    addText("sort", order.sort);
    addText("separator", order.separator);
    if (order.width) phrases.push_back({"width", std::to_string(*order.width)});
    addFlag("notable", order.notable);
    if (const char* keyword = ObjectKeyword(order.object)) phrases.push_back({keyword});
    return phrases;
}

std::vector<std::string> SpellOrder(const Order& order, Dice* dice) {
    std::vector<std::string> words;
    if (order.quiet) words.emplace_back("quiet");
    if (!order.server.empty()) words.push_back("server=" + order.server);
    const auto* const verb = std::find_if(std::begin(kVerbs), std::end(kVerbs),
                                          [&](const VerbWords& entry) { return entry.verb == order.verb; });
    words.emplace_back(verb->command);
    if (verb->parameter != nullptr) words.emplace_back(verb->parameter);

    std::vector<Phrase> phrases = AddressPhrases(order);
    for (Phrase& phrase : OptionPhrases(order))
        phrases.push_back(std::move(phrase));
    for (size_t i = phrases.size(); dice != nullptr && i > 1; --i) {
        std::swap(phrases[i - 1], phrases[dice->Below(i)]);
    }
    for (const Phrase& phrase : phrases) {
        for (std::string& word : Spell(phrase, dice))
            words.push_back(std::move(word));
    }
    if (order.newName) words.push_back(*order.newName);
    return words;
}

}  // namespace

std::vector<std::string> Words(const Order& order) {
    return SpellOrder(order, nullptr);
}

std::vector<std::string> Words(const Order& order, Dice& dice) {
    return SpellOrder(order, &dice);
}

std::string Spelt(const std::vector<std::string>& words) {
    std::string text = "krvcmd";
    for (const std::string& word : words)
        text += " '" + word + "'";
    return text;
}

}  // namespace krvcmd::reliability
