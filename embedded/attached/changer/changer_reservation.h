#pragma once

#include <memory>

#include "embedded/attached/device/device.h"

namespace embedded::attached {

// Keeps other hosts from moving media in a changer while it lives: a persistent reservation (SPC-4, 5.13) of
// the type Write Exclusive, with which everybody may still look. The reservation of a process of the same key
// that died is taken over.
class ChangerReservation {
  public:
    // `key` is not 0 and the same for all processes that take turns with the changer, which outlives the
    // result. Null when the changer knows no reservations; Reserved when another host has one.
    static Result<std::unique_ptr<ChangerReservation>> Take(Device& changer, uint64_t key);

    ChangerReservation(const ChangerReservation&) = delete;
    ChangerReservation& operator=(const ChangerReservation&) = delete;
    ~ChangerReservation();

  private:
    ChangerReservation(Device& changer, uint64_t key) : m_changer(changer), m_key(key) {}

    Device& m_changer;
    uint64_t m_key;
};

}  // namespace embedded::attached
