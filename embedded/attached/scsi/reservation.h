#pragma once

#include <array>
#include <vector>

#include "embedded/attached/scsi/cdb.h"

namespace embedded::attached {

// SPC-4, 6.16. Which hosts have registered, and which one holds the reservation.
struct RegisteredKeys {
    uint32_t generation = 0;  // grows with every change
    std::vector<uint64_t> keys;
};
Cdb ReadKeys(uint16_t allocation);
Result<RegisteredKeys> DecodeKeys(Bytes answer);

// SPC-4, table 215; those that are of use here.
enum class ReservationType : uint8_t { WriteExclusive = 1, ExclusiveAccess = 3 };

struct Reservation {
    uint64_t key = 0;
    uint8_t type = 0;
};
Cdb ReadReservation(uint16_t allocation);
// Nothing when nobody holds one.
Result<std::optional<Reservation>> DecodeReservation(Bytes answer);

// SPC-4, 6.17.
enum class ReserveAction : uint8_t {
    Register = 0,
    Reserve = 1,
    Release = 2,
    Preempt = 4,               // takes the reservation away from the holder of the other key
    RegisterAndIgnoreKey = 6,  // whatever key was registered before
};
// The parameters go with the command. `newKey`: to register, 0 to withdraw; or the key that is preempted.
Cdb PersistentReserveOut(ReserveAction action, ReservationType type);
std::array<uint8_t, 24> ReserveParameters(uint64_t ownKey, uint64_t newKey);

}  // namespace embedded::attached
