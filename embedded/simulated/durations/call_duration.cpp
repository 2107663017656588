#include "embedded/simulated/durations/call_duration.h"

#include <algorithm>
#include <iterator>

#include "embedded/model/media_types.h"

namespace embedded {
namespace {

// In units of 10^9 bytes; 0 for a type that is not known.
double CapacityOf(uint32_t type) {
    constexpr double kGiga = 1e9;
    const MediaType* found = FindMediaType(type);
    return found == nullptr ? 0 : static_cast<double>(found->capacity) / kGiga;
}

Seconds ScanDuration(const DriveDurations& drive, const HandledMedium& /*medium*/) {
    return drive.read;
}

Seconds FormatDuration(const DriveDurations& drive, const HandledMedium& medium) {
    const double capacity = CapacityOf(medium.type);
    const Seconds certify = medium.certified ? capacity * drive.certifyPerGb : Seconds(0);
    return drive.formatDisc + capacity * drive.formatPerGb + certify;
}

Seconds FinalizeDuration(const DriveDurations& drive, const HandledMedium& medium) {
    return drive.finalize + CapacityOf(medium.type) * drive.finalizePerGb;
}

Seconds EraseDuration(const DriveDurations& drive, const HandledMedium& medium) {
    return drive.erase + CapacityOf(medium.type) * drive.erasePerGb;
}

// What a drive does with each side, once the medium turns.
struct Work {
    std::string_view function;
    Seconds (*duration)(const DriveDurations&, const HandledMedium&);
};

constexpr Work kWorks[] = {
    {"KrvMediaImport", ScanDuration},        {"KrvMediaScan", ScanDuration},
    {"KrvVolumeFormat", FormatDuration},     {"KrvVolumeErase", EraseDuration},
    {"KrvVolumeFinalize", FinalizeDuration},
};

}  // namespace

CallDuration DurationOf(const DurationProfile& profile, std::string_view function,
                        const HandledMedium& medium) {
    CallDuration duration;
    const Seconds move = profile.move + static_cast<double>(medium.slot) * profile.movePerSlot;
    if (medium.sides == HandledSides::None) {
        duration.moving = move;
        return duration;
    }
    const auto* work = std::ranges::find(kWorks, function, &Work::function);
    if (work == std::end(kWorks)) return duration;
    duration.moving = 2 * move;
    if (medium.sides != HandledSides::A) duration.moving += 2 * profile.turn;
    const DriveDurations& drive = profile.Of(medium.type);
    const int sides = medium.sides == HandledSides::Both ? 2 : 1;
    duration.driving = sides * (profile.load + drive.spinUp + work->duration(drive, medium) + profile.unload);
    return duration;
}

}  // namespace embedded
