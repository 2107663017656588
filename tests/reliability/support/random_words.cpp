#include "tests/reliability/support/random_words.h"

#include "tests/reliability/support/random_world.h"

namespace krvcmd::reliability {
namespace {

constexpr const char* kOptions[] = {"quiet", "-quiet", "/qui", "server=srv", "serve", "-server=x"};

constexpr const char* kCommands[] = {"help", "?",    "-?",     "service", "import", "imp", "export",
                                     "exp",  "scan", "format", "form",    "enable", "en",  "disable",
                                     "dis",  "name", "query",  "que",     "delete"};

constexpr const char* kParameters[] = {
    "J",       "J@8",         "J=@11",         "J=Tower",    "M",       "M1",         "M=2",
    "S",       "S1",          "S=2",           "S1-3",       "S1/4,2",  "S5-3",       "D1",
    "V",       "V@33",        "V@1-9",         "V=@273,517", ".A",      ".B",         "repeat=2",
    "repeat",  "label",       "lab=x",         "erase",      "certify", "sequential", "final",
    "start",   "stop",        "restart",       "col=IL",     "so=-lI",  "width=60",   "notable",
    "-not",    "sep=,",       "juke",          "magazines",  "drives",  "slots",      "slot",
    "volumes", "-volumes",    "new_name",      "8",          "@8",      "=@8",        "1-3",
    "Tower",   "x",           "S1-2000000000", "erase=1",    "=",       "S0",         "V@0",
    "J@0",     "M2147483648", "S1-",           "sort=",      "width=0"};

}  // namespace

std::vector<std::string> RandomWords(Dice& dice) {
    std::vector<std::string> words;
    while (dice.OneIn(4))
        words.emplace_back(dice.Pick(kOptions));
    if (!dice.OneIn(15)) words.emplace_back(dice.Pick(kCommands));
    while (!dice.OneIn(3)) {
        std::string word = dice.Pick(kParameters);
        if (dice.OneIn(20)) word = RandomText(dice, 12);
        if (dice.OneIn(20)) word.resize(dice.Below(word.size() + 1));
        if (dice.OneIn(20)) word += RandomText(dice, 3);
        words.push_back(word);
    }
    return words;
}

}  // namespace krvcmd::reliability
