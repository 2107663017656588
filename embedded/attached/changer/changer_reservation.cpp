#include "embedded/attached/changer/changer_reservation.h"

#include "embedded/attached/scsi/reservation.h"
#include "embedded/attached/scsi/sense.h"

namespace embedded::attached {
namespace {

constexpr uint16_t kReservationAnswer = 24;  // bytes

// A unit attention says that something else has changed; the command was not carried out.
Result<Nothing> Send(Device& changer, ReserveAction action, uint64_t ownKey, uint64_t newKey) {
    const Cdb cdb = PersistentReserveOut(action, ReservationType::WriteExclusive);
    const auto parameters = ReserveParameters(ownKey, newKey);
    auto done = changer.Do(cdb, changer.GetUsualLimit(), parameters);
    if (!done && done.GetError().kind == ErrorKind::Attention)
        done = changer.Do(cdb, changer.GetUsualLimit(), parameters);
    return done;
}

bool IsUnknownCommand(const Error& error) {
    constexpr uint8_t kInvalidOperationCode = 0x20;
    constexpr uint8_t kInvalidField = 0x24;
    return error.sense && error.sense->key == sense_key::kIllegalRequest &&
           (error.sense->asc == kInvalidOperationCode || error.sense->asc == kInvalidField);
}

// Takes the reservation over from a dead process of the same key.
Result<Nothing> Reserve(Device& changer, uint64_t key) {
    auto reserved = Send(changer, ReserveAction::Reserve, key, 0);
    if (reserved || reserved.GetError().kind != ErrorKind::Reserved) return reserved;
    const auto answer = changer.Ask(ReadReservation(kReservationAnswer), kReservationAnswer);
    if (!answer) return answer.GetError();
    const auto holder = DecodeReservation(*answer);
    if (!holder) return changer.Named(holder.GetError());
    // The other host has let go of it meanwhile.
    if (!holder->has_value()) return Send(changer, ReserveAction::Reserve, key, 0);
    if ((*holder)->key != key) return reserved;
    return Send(changer, ReserveAction::Preempt, key, key);
}

}  // namespace

Result<std::unique_ptr<ChangerReservation>> ChangerReservation::Take(Device& changer, uint64_t key) {
    using Taken = std::unique_ptr<ChangerReservation>;
    const auto registered = Send(changer, ReserveAction::RegisterAndIgnoreKey, 0, key);
    if (!registered && IsUnknownCommand(registered.GetError())) return Taken();
    if (!registered) return registered.GetError();
    const auto reserved = Reserve(changer, key);
    if (!reserved) {
        (void)Send(changer, ReserveAction::Register, key, 0);
        return reserved.GetError();
    }
    return Taken(new ChangerReservation(changer, key));
}

ChangerReservation::~ChangerReservation() {
    try {
        (void)Send(m_changer, ReserveAction::Release, m_key, 0);
        (void)Send(m_changer, ReserveAction::Register, m_key, 0);
    } catch (...) {
        // There is no memory. As without an answer, the next process of this key takes the reservation over.
        return;
    }
}

}  // namespace embedded::attached
