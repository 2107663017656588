#include "embedded/attached/scsi/sense_meanings.h"

#include <algorithm>
#include <array>

#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

using enum Reaction;
using namespace sense_key;

constexpr const char* kLookAtPanel = "look at its panel, and call the service when it happens again";
constexpr const char* kCleanAndRetry = "clean the disc and the drive's lens, and try again";
constexpr const char* kNotThisDevice = "check that this is the device that was meant";

// Additional sense codes: SPC-4, annex F.2; those of drives: MMC-6, annex F.
constexpr SenseMeaning kMeanings[] = {
    {kNotReady, 0x04, 0x00, Fail, Change::Nothing, "is not ready and does not say why", kLookAtPanel},
    {kNotReady, 0x04, 0x01, Wait, Change::Nothing, "is becoming ready", "try again in a minute"},
    {kNotReady, 0x04, 0x02, Fail, Change::Nothing, "has not been started", "start it at its panel"},
    {kNotReady, 0x04, 0x03, Fail, Change::Nothing, "needs an operator", "look at its panel"},
    {kNotReady, 0x04, 0x04, Wait, Change::Nothing, "is formatting", "try again when it has finished"},
    {kNotReady, 0x04, 0x07, Wait, Change::Nothing, "is busy with an earlier command",
     "try again in a minute"},
    {kNotReady, 0x04, 0x08, Wait, Change::Nothing, "is busy writing", "try again when it has finished"},
    {kNotReady, 0x04, 0x09, Wait, Change::Nothing, "is testing itself", "try again in a minute"},
    {kNotReady, 0x04, 0x0A, Wait, Change::Nothing, "is changing over to another path",
     "try again in a minute"},
    {kNotReady, 0x04, 0x12, Fail, Change::Nothing, "is switched offline", "switch it online at its panel"},
    {kNotReady, 0x04, 0x1A, Wait, Change::Nothing, "is starting or stopping", "try again in a minute"},
    {kNotReady, 0x04, kAny, Fail, Change::Nothing, "is not ready", kLookAtPanel},
    {kNotReady, 0x05, kAny, Fail, Change::Nothing, "has no power or is disconnected",
     "switch it on and check its cable"},
    {kNotReady, 0x08, kAny, Fail, Change::Nothing, "does not answer its own controller",
     "switch it off and on, and check its cables"},
    {kNotReady, 0x30, kAny, Fail, Change::Nothing, "cannot use this medium",
     "use one that the drive supports"},
    {kNotReady, 0x3A, kAny, Fail, Change::Nothing, "holds no medium", "insert one"},
    {kNotReady, 0x3B, 0x12, Fail, Change::Nothing, "has its magazine removed", "put the magazine back"},
    {kNotReady, 0x3E, 0x00, Wait, Change::Nothing, "has not set itself up yet", "try again in a minute"},
    {kNotReady, 0x3E, kAny, Fail, Change::Nothing, "has no power or is disconnected",
     "switch it on and check its cable"},
    {kNotReady, 0x83, kAny, Fail, Change::Nothing,
     "is not ready because a door is open or a magazine is missing", "close the door and look at its panel"},

    {kMediumError, 0x02, kAny, Fail, Change::Nothing, "cannot find the place on the medium", kCleanAndRetry},
    {kMediumError, 0x03, kAny, Fail, Change::Nothing, "failed to write the medium", "use another disc"},
    {kMediumError, 0x0C, kAny, Fail, Change::Nothing, "failed to write the medium", "use another disc"},
    {kMediumError, 0x11, kAny, Fail, Change::Nothing, "cannot read the medium", kCleanAndRetry},
    {kMediumError, 0x30, kAny, Fail, Change::Nothing, "cannot use this medium",
     "use one that the drive supports"},
    {kMediumError, 0x31, kAny, Fail, Change::Nothing, "finds the format of the medium damaged",
     "format it again"},
    {kMediumError, 0x51, kAny, Fail, Change::Nothing, "failed to erase the medium", "use another disc"},
    {kMediumError, 0x57, kAny, Fail, Change::Nothing, "cannot read the table of contents of the disc",
     kCleanAndRetry},
    {kMediumError, 0x72, kAny, Fail, Change::Nothing, "failed to close the session on the disc",
     "use another disc"},
    {kMediumError, 0x73, kAny, Fail, Change::Nothing, "failed to set its laser for this disc",
     "use another disc"},

    {kHardwareError, 0x08, kAny, Fail, Change::Nothing, "does not answer its own controller",
     "switch it off and on, and check its cables"},
    {kHardwareError, 0x09, kAny, Fail, Change::Nothing, "cannot follow the track of the disc",
     kCleanAndRetry},
    {kHardwareError, 0x15, 0x01, Fail, Change::Nothing, "has a mechanical fault",
     "check that the drive is connected and that nothing blocks the robot"},
    {kHardwareError, 0x15, kAny, Fail, Change::Nothing, "cannot position its mechanics", kLookAtPanel},
    {kHardwareError, 0x3B, 0x0D, Fail, Change::Nothing, "finds the destination full",
     "look at the elements again"},
    {kHardwareError, 0x3B, 0x0E, Fail, Change::Nothing, "finds the source empty",
     "look at the elements again"},
    {kHardwareError, 0x3B, 0x16, Fail, Change::Nothing, "cannot position its mechanics",
     "check that nothing blocks the robot, and that its picker is empty"},
    {kHardwareError, 0x40, kAny, Fail, Change::Nothing, "failed its self-test", "call the service"},
    {kHardwareError, 0x44, kAny, Fail, Change::Nothing, "has an internal fault", kLookAtPanel},
    {kHardwareError, 0x53, kAny, Fail, Change::Nothing, "cannot load or eject the medium",
     "look whether the medium is stuck"},
    {kHardwareError, 0x80, kAny, Fail, Change::Nothing, "reports a fault of its maker's own kind",
     kLookAtPanel},

    {kIllegalRequest, 0x20, kAny, Fail, Change::Nothing, "does not know the command", kNotThisDevice},
    {kIllegalRequest, 0x21, 0x01, Fail, Change::Nothing, "has no element with this address",
     "look at the elements again"},
    {kIllegalRequest, 0x21, 0x02, Fail, Change::Nothing,
     "refuses to write anywhere but at the next writable block", ""},
    {kIllegalRequest, 0x21, kAny, Fail, Change::Nothing, "has no block with this address", ""},
    {kIllegalRequest, 0x24, kAny, Fail, Change::Nothing, "does not accept a field of the command",
     kNotThisDevice},
    {kIllegalRequest, 0x25, kAny, Fail, Change::Nothing, "does not exist under this logical unit number",
     "check the last part of its address"},
    {kIllegalRequest, 0x26, kAny, Fail, Change::Nothing, "does not accept the parameters of the command",
     kNotThisDevice},
    {kIllegalRequest, 0x2C, kAny, Fail, Change::Nothing, "cannot carry out the command at this point", ""},
    {kIllegalRequest, 0x30, kAny, Fail, Change::Nothing, "cannot do this with this kind of medium",
     "use one that the drive supports"},
    {kIllegalRequest, 0x39, kAny, Fail, Change::Nothing, "cannot keep settings", ""},
    {kIllegalRequest, 0x3B, 0x0D, Fail, Change::Nothing, "finds the destination full",
     "look at the elements again"},
    {kIllegalRequest, 0x3B, 0x0E, Fail, Change::Nothing, "finds the source empty",
     "look at the elements again"},
    {kIllegalRequest, 0x3B, 0x11, Fail, Change::Nothing, "cannot reach the magazine", "insert the magazine"},
    {kIllegalRequest, 0x3B, 0x12, Fail, Change::Nothing, "has its magazine removed", "put the magazine back"},
    {kIllegalRequest, 0x3B, 0x14, Fail, Change::Nothing, "has its magazine locked", "unlock the magazine"},
    {kIllegalRequest, 0x3B, kAny, Fail, Change::Nothing, "cannot move a medium there",
     "look at the elements again"},
    {kIllegalRequest, 0x44, kAny, Fail, Change::Nothing, "has an internal fault", kLookAtPanel},
    {kIllegalRequest, 0x53, 0x02, Fail, Change::Nothing, "is locked against taking the medium out",
     "end the program that uses the drive"},
    {kIllegalRequest, 0x53, kAny, Fail, Change::Nothing, "cannot load or eject the medium",
     "look whether the medium is stuck"},
    {kIllegalRequest, 0x55, kAny, Fail, Change::Nothing, "has no resources left for the command",
     "try again later"},
    {kIllegalRequest, 0x64, kAny, Fail, Change::Nothing, "cannot do this on this kind of track", ""},
    {kIllegalRequest, 0x6F, kAny, Fail, Change::Nothing, "refuses to read a copy-protected disc", ""},
    {kIllegalRequest, 0x72, kAny, Fail, Change::Nothing, "finds no room for another session on the disc",
     "use another disc"},

    {kUnitAttention, 0x28, 0x00, Repeat, Change::Medium, "reports that media may have been changed", ""},
    {kUnitAttention, 0x28, 0x01, Repeat, Change::ImportExport, "reports that its mail slots were used", ""},
    {kUnitAttention, 0x28, kAny, Repeat, Change::Medium, "reports that media may have been changed", ""},
    {kUnitAttention, 0x29, kAny, Repeat, Change::Reset, "was reset or switched on", ""},
    {kUnitAttention, 0x2A, kAny, Repeat, Change::Settings, "reports changed settings", ""},
    {kUnitAttention, 0x2F, kAny, Repeat, Change::Reset, "lost commands that were waiting", ""},
    {kUnitAttention, 0x3B, kAny, Repeat, Change::Medium, "reports that a magazine was used", ""},
    {kUnitAttention, 0x3F, 0x03, Repeat, Change::LogicalUnits, "reports that it is another device now", ""},
    {kUnitAttention, 0x3F, 0x0E, Repeat, Change::LogicalUnits, "reports that devices came or left", ""},
    {kUnitAttention, 0x3F, kAny, Repeat, Change::Settings, "reports a changed set-up", ""},
    {kUnitAttention, 0x5A, 0x01, Repeat, Change::Medium,
     "reports that somebody asked for the medium at its panel", ""},

    {kDataProtect, 0x27, kAny, Fail, Change::Nothing, "finds the medium protected against writing",
     "move the protection tab of the medium, or use another one"},
    {kDataProtect, 0x30, kAny, Fail, Change::Nothing, "cannot write this kind of medium",
     "use one that the drive supports"},
    {kAbortedCommand, 0x3E, kAny, Fail, Change::Nothing, "has no power or is disconnected",
     "switch it on and check its cable"},
    {kAbortedCommand, 0x47, kAny, Fail, Change::Nothing, "met faults on the cable", "check its cable"},
    {kMiscompare, 0x1D, kAny, Fail, Change::Nothing, "finds other data on the medium than were written",
     "use another disc"},
};

// For a code that no row above names, by sense key.
constexpr SenseMeaning kByKey[] = {
    {kNoSense, 0, kAny, Fail, Change::Nothing, "failed without a reason", kLookAtPanel},
    {kRecoveredError, 0, kAny, Fail, Change::Nothing, "did it with difficulty", "have it looked at"},
    {kNotReady, 0, kAny, Fail, Change::Nothing, "is not ready", kLookAtPanel},
    {kMediumError, 0, kAny, Fail, Change::Nothing, "has trouble with the medium", kCleanAndRetry},
    {kHardwareError, 0, kAny, Fail, Change::Nothing, "has a hardware fault", kLookAtPanel},
    {kIllegalRequest, 0, kAny, Fail, Change::Nothing, "does not accept the command", kNotThisDevice},
    {kUnitAttention, 0, kAny, Repeat, Change::Medium, "reports that something has changed", ""},
    {kDataProtect, 0, kAny, Fail, Change::Nothing, "does not let the medium be read or written", ""},
    {kBlankCheck, 0, kAny, Fail, Change::Nothing, "finds nothing written there", ""},
    {0x9, 0, kAny, Fail, Change::Nothing, "reports a fault of its maker's own kind", kLookAtPanel},
    {0xA, 0, kAny, Fail, Change::Nothing, "ended a copy", ""},
    {kAbortedCommand, 0, kAny, Fail, Change::Nothing, "broke off the command", "try again"},
    {0xC, 0, kAny, Fail, Change::Nothing, "failed", kLookAtPanel},
    {kVolumeOverflow, 0, kAny, Fail, Change::Nothing, "finds the medium full", "use another disc"},
    {kMiscompare, 0, kAny, Fail, Change::Nothing, "finds other data than expected", "use another disc"},
    {kCompleted, 0, kAny, Fail, Change::Nothing, "failed", kLookAtPanel},
};
static_assert(std::size(kByKey) == 16);

}  // namespace

std::span<const SenseMeaning> SenseMeanings() {
    return kMeanings;
}

const SenseMeaning& MeaningOf(const SenseCode& code) {
    const auto* row = std::ranges::find_if(kMeanings, [&](const SenseMeaning& meaning) {
        return (meaning.key == kAny || meaning.key == code.key) && meaning.asc == code.asc &&
               (meaning.ascq == kAny || meaning.ascq == code.ascq);
    });
    return row != std::end(kMeanings) ? *row : kByKey[code.key & 0x0F];
}

std::string SenseSentence(const std::string& device, const SenseCode& code) {
    const SenseMeaning& meaning = MeaningOf(code);
    std::string sentence = device + " " + meaning.meaning;
    if (*meaning.advice != '\0') sentence += std::string("; ") + meaning.advice;
    return sentence + " (sense " + SenseText(code) + ")";
}

}  // namespace embedded::attached
