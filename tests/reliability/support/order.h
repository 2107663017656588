#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/reliability/support/dice.h"

namespace krvcmd::reliability {

enum class Verb { Import, Export, Scan, Format, Enable, Disable, Name, Query, Start, Stop, Restart };

enum class Object { None, Jukeboxes, Magazines, Drives, Slots, Volumes };

// A number or a range of numbers of the command line, one-based.
struct Numbers {
    int32_t from = 0;
    int32_t to = 0;
    bool isRange = false;
};

inline Numbers One(int32_t number) {
    return {number, number, false};
}

inline Numbers FromTo(int32_t from, int32_t to) {
    return {from, to, true};
}

// What a command line asks for, before it is spelt in words: the program gets the words, the model of
// the program (model.h) gets this.
struct Order {
    Verb verb = Verb::Query;
    bool quiet = false;
    std::string server{};  // empty: not given

    // The address. Lists are as written; an empty list or text was not given.
    std::optional<int32_t> jukeboxId{};
    std::string jukeboxName{};
    std::vector<Numbers> magazines{};
    std::vector<Numbers> slots{};
    std::vector<Numbers> volumes{};
    std::optional<int32_t> drive{};
    bool sideA = false;
    bool sideB = false;

    std::optional<int32_t> repeat{};

    // Of format.
    std::optional<std::string> label{};
    bool erase = false;
    bool certify = false;
    bool sequential = false;
    bool finalize = false;

    // Of name.
    std::optional<std::string> newName{};

    // Of query.
    Object object = Object::None;
    std::optional<std::string> columns{};
    std::optional<std::string> sort{};
    std::optional<std::string> separator{};
    std::optional<int32_t> width{};
    bool notable = false;

    bool HasJukebox() const { return jukeboxId.has_value() || !jukeboxName.empty(); }
};

// The words of the command line, plainly spelt.
std::vector<std::string> Words(const Order& order);

// The words in one of the many spellings that mean the same: the parameters in another order, values
// attached or apart, keywords abbreviated.
std::vector<std::string> Words(const Order& order, Dice& dice);

// The words as one text, for messages.
std::string Spelt(const std::vector<std::string>& words);

}  // namespace krvcmd::reliability
