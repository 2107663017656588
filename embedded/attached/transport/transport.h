#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "embedded/attached/base/big_endian.h"
#include "embedded/attached/base/result.h"

namespace embedded::attached {

// A command on its way to a device. Data go in one direction at most: one of the two buffers is empty.
struct Command {
    Bytes cdb;                  // 6, 10, 12 or 16 bytes
    std::span<uint8_t> dataIn;  // for what the device answers
    Bytes dataOut;              // what the device is sent
    std::chrono::milliseconds timeLimit{30'000};
};

// Status codes of a command (SAM-5, 5.3).
namespace scsi_status {
constexpr uint8_t kGood = 0x00;
constexpr uint8_t kCheckCondition = 0x02;
constexpr uint8_t kConditionMet = 0x04;
constexpr uint8_t kBusy = 0x08;
constexpr uint8_t kReservationConflict = 0x18;
constexpr uint8_t kTaskSetFull = 0x28;
constexpr uint8_t kTaskAborted = 0x40;
}  // namespace scsi_status

// What a device answered.
struct Completion {
    uint8_t status = scsi_status::kGood;
    std::vector<uint8_t> sense;  // with kCheckCondition
    size_t transferred = 0;      // bytes of the buffer that were filled or sent; never more than it has
};

// Carries commands to one device and waits for each; it neither repeats nor understands them. Not for use by
// several threads at once.
class Transport {
  public:
    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default;

    // What the device answered, or why it did not. After Lost and TimedOut the command may have been carried
    // out or still be; after any other error it was not. Bytes of `dataIn` behind what was transferred are
    // zero.
    virtual Result<Completion> Send(const Command& command) = 0;

    // False after the connection was lost or given up: Send() fails until Reconnect() has succeeded.
    virtual bool IsConnected() const = 0;
    virtual Result<Nothing> Reconnect() = 0;

    // How the device is told on a command line; for error texts as well.
    virtual std::string GetAddress() const = 0;
};

}  // namespace embedded::attached
