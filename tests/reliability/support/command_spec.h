#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/reliability/support/random_numbers.h"

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

// What a command line asks for. The program receives it as words, the model (model.h) as it is.
struct CommandSpec {
    Verb verb = Verb::Query;
    bool quiet = false;
    std::string server{};  // empty when not given

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

// The words of the command line in their plainest form: keywords in full, values behind "=".
std::vector<std::string> Words(const CommandSpec& command);

// The words in one of the many forms that mean the same: the parameters in another order, values
// attached or apart, keywords abbreviated.
std::vector<std::string> Words(const CommandSpec& command, RandomNumbers& random);

// The words as one text, for messages.
std::string CommandLineText(const std::vector<std::string>& words);

}  // namespace krvcmd::reliability
