// The numbers of the binary interface by name.
#pragma once

#include <cstdint>
#include <string_view>

namespace krvcmd {

// A number in a key that is not set.
inline constexpr int32_t kUnset = -1;

// Sides of a medium, in keys.
inline constexpr int32_t kSideA = 0;
inline constexpr int32_t kSideB = 1;
inline constexpr int32_t kBothSides = 2;  // the whole medium

// Media types that name no medium. The others are the service's own numbers.
inline constexpr uint32_t kUnknownMedium = 254;
inline constexpr uint32_t kNoMedium = 255;

// SlotRecord::state
namespace slot_state {
inline constexpr uint32_t kUnknown = 0;
inline constexpr uint32_t kNotPresent = 1;
inline constexpr uint32_t kScanFailed = 2;
inline constexpr uint32_t kEmpty = 3;
inline constexpr uint32_t kFull = 4;
}  // namespace slot_state

// SideRecord::state
namespace side_state {
inline constexpr uint32_t kUnknown = 0;
inline constexpr uint32_t kNotPresent = 1;
inline constexpr uint32_t kScanFailed = 2;
inline constexpr uint32_t kBad = 3;
inline constexpr uint32_t kBlank = 4;
inline constexpr uint32_t kNoFileSystem = 5;
inline constexpr uint32_t kFileSystem = 6;
}  // namespace side_state

// SideRecord::finalization
namespace finalization {
inline constexpr uint32_t kUnknown = 0;
inline constexpr uint32_t kNotFinalized = 1;
inline constexpr uint32_t kFinalized = 2;
inline constexpr uint32_t kClosed = 3;
}  // namespace finalization

// VolumeRecord::state; every other number is "unknown".
namespace volume_state {
inline constexpr uint32_t kActive = 0;
inline constexpr uint32_t kDisabled = 1;
inline constexpr uint32_t kOffline = 2;
}  // namespace volume_state

// VolumeRecord::type
namespace volume_type {
inline constexpr uint32_t kSingleDisc = 0;
inline constexpr uint32_t kMirror = 1;
inline constexpr uint32_t kVolumeSet = 2;
}  // namespace volume_type

// The error codes of the service that mean something to krvcmd. Every other code is an error and nothing
// else.
namespace service_code {
inline constexpr uint32_t kNoSuchItem = 2;
inline constexpr uint32_t kSideUnreadable = 3;
inline constexpr uint32_t kAlreadyDone = 4;
inline constexpr uint32_t kStoppedByOperator = 7;
inline constexpr uint32_t kNoLocation = 500;
inline constexpr uint32_t kNoMedium = 501;
inline constexpr uint32_t kSlotNotUsable = 502;
}  // namespace service_code

struct ServiceCode {
    uint32_t code;
    std::string_view meaning;
    std::string_view effect;  // what krvcmd does; names of functions between backticks
};

// In the order of the codes. The manual page krv-sdk(3) shows this table.
inline constexpr ServiceCode kServiceCodes[] = {
    {service_code::kNoSuchItem, "no such item",
     "From a call for a slot: the walk over the slots ends there without an error, and so does the work on a "
     "single slot. Walks are made by import, export, scan, format and a query that goes through slots. "
     "Everywhere else the code is an error."},
    {service_code::kSideUnreadable, "the side cannot be read",
     "`KrvGetSide` fills the record all the same. In a query that goes through slots it is no error, and the "
     "volume on the side is listed; neither is it one when it comes from the calls that describe that "
     "volume. "
     "In a query that starts from volumes, and for enable and disable, the code is an error."},
    {service_code::kAlreadyDone, "the slot is already as wanted",
     "From `KrvMediaImport`, `KrvMediaExport` and `KrvMediaScan` it counts as success."},
    {service_code::kStoppedByOperator, "stopped by the operator",
     "A walk over slots ends at once with this error."},
    {service_code::kNoLocation, "the volume has no location",
     "From `KrvVolumeLocations` it is no error: the volume has no location."},
    {service_code::kNoMedium, "there is no medium",
     "A walk over slots goes on with the next one, which does not count as a repeat; an import ends there "
     "without an error. For a single slot the code is an error."},
    {service_code::kSlotNotUsable, "the slot cannot take or give a medium",
     "A walk over slots goes on with the next one and does not count the slot as a repeat. For a single slot "
     "the code is an error."},
};

}  // namespace krvcmd
