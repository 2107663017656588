#include "embedded/attached/scsi/reservation.h"

namespace embedded::attached {
namespace {

constexpr size_t kKeysHeader = 8;
constexpr size_t kKey = 8;
constexpr uint32_t kParameters = 24;
constexpr unsigned kReadKeys = 0;
constexpr unsigned kReadReservation = 1;

}  // namespace

Cdb ReadKeys(uint16_t allocation) {
    return Cdb(kPersistentReserveIn).Put8(1, kReadKeys).Put16(7, allocation);
}

Result<RegisteredKeys> DecodeKeys(Bytes answer) {
    BigEndianReader reader(answer);
    RegisteredKeys registered;
    registered.generation = reader.Get32(0);
    const uint32_t length = reader.Get32(4);
    if (!reader.IsComplete()) return ShortAnswer(kPersistentReserveIn, answer.size());
    if (length % kKey != 0) return BadAnswer(kPersistentReserveIn, "has a length that is no multiple of 8");
    for (size_t at = kKeysHeader; at - kKeysHeader < length && at + kKey <= answer.size(); at += kKey) {
        registered.keys.push_back(reader.Get64(at));
    }
    return registered;
}

Cdb ReadReservation(uint16_t allocation) {
    return Cdb(kPersistentReserveIn).Put8(1, kReadReservation).Put16(7, allocation);
}

Result<std::optional<Reservation>> DecodeReservation(Bytes answer) {
    BigEndianReader reader(answer);
    const uint32_t length = reader.Get32(4);
    if (!reader.IsComplete()) return ShortAnswer(kPersistentReserveIn, answer.size());
    if (length == 0) return std::optional<Reservation>();
    const Reservation reservation{reader.Get64(8), reader.GetBits(21, 3, 0)};
    if (!reader.IsComplete()) return ShortAnswer(kPersistentReserveIn, answer.size());
    return std::optional(reservation);
}

Cdb PersistentReserveOut(ReserveAction action, ReservationType type) {
    return Cdb(kPersistentReserveOut)
        .Put8(1, static_cast<uint8_t>(action))
        .Put8(2, static_cast<uint8_t>(type))
        .Put32(5, kParameters);
}

std::array<uint8_t, 24> ReserveParameters(uint64_t ownKey, uint64_t newKey) {
    std::array<uint8_t, kParameters> parameters{};
    BigEndianWriter writer(parameters);
    writer.Put64(0, ownKey);
    writer.Put64(8, newKey);
    return parameters;
}

}  // namespace embedded::attached
