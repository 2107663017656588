#pragma once

#include <span>

#include "embedded/attached/base/result.h"

namespace embedded::attached {

// What is to be done about sense data.
enum class Reaction {
    Fail,    // the command failed for good
    Wait,    // the device is busy getting ready: the same command works later
    Repeat,  // a unit attention: something has changed, and the command was not carried out
};

// What a unit attention says has changed since the last command.
enum class Change {
    Nothing,
    Medium,        // the medium of a drive, or any element of a changer
    ImportExport,  // somebody reached for the mail slots
    Reset,         // the device was reset or switched on: locks and settings are gone
    Settings,      // mode pages or reservations
    LogicalUnits,  // devices came to the target or left it
};

constexpr int kAny = -1;

// One row of the table. `key` and `ascq` may be kAny. Both texts continue a sentence whose subject is the
// device: "Drive 2 holds no medium; insert one". The advice is empty when there is nothing that an operator
// could do.
struct SenseMeaning {
    int key;
    uint8_t asc;
    int ascq;
    Reaction reaction;
    Change change;
    const char* meaning;
    const char* advice;
};

// All rows; the first that fits counts.
std::span<const SenseMeaning> SenseMeanings();

// The row that fits best; for codes that no row names, one that says no more than the sense key does.
const SenseMeaning& MeaningOf(const SenseCode& code);

// "Drive 2 holds no medium; insert one (sense 2/3A/00)".
std::string SenseSentence(const std::string& device, const SenseCode& code);

}  // namespace embedded::attached
