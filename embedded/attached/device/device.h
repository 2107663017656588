#pragma once

#include <memory>
#include <set>

#include "embedded/attached/device/waiting.h"
#include "embedded/attached/scsi/cdb.h"
#include "embedded/attached/scsi/sense_meanings.h"
#include "embedded/attached/transport/transport.h"

namespace embedded::attached {

// One device behind a transport: waits while it is busy, repeats what may be repeated, and says in words what
// the device answers. What changed behind the program's back is gathered from unit attentions.
class Device {
  public:
    using Milliseconds = std::chrono::milliseconds;

    // `name` is the subject of error texts, such as "Drive 2 of jukebox \"Tower\"" or "/dev/sg3". `waiting`
    // outlives the device.
    Device(std::unique_ptr<Transport> transport, std::string name, Waiting& waiting = RealWaiting());

    // For commands without a limit of their own.
    Milliseconds GetUsualLimit() const { return m_usualLimit; }
    void SetUsualLimit(Milliseconds limit) { m_usualLimit = limit; }

    const std::string& GetName() const { return m_name; }
    std::string GetAddress() const { return m_transport->GetAddress(); }
    Waiting& GetWaiting() const { return m_waiting; }

    // For commands that change nothing: repeated after unit attentions and while the device is becoming
    // ready, until the limit, and once over a new connection. Returns the bytes that came, `length` at most.
    Result<std::vector<uint8_t>> Ask(const Cdb& cdb, size_t length, Milliseconds limit);
    Result<std::vector<uint8_t>> Ask(const Cdb& cdb, size_t length) { return Ask(cdb, length, m_usualLimit); }

    // For commands that move or write something: waits while the device is busy, but a unit attention is
    // returned as an error of the kind Attention, since what the caller knows may no longer be true. After
    // Lost and TimedOut only the device itself can tell whether it was done.
    Result<Nothing> Do(const Cdb& cdb, Milliseconds limit, Bytes dataOut = {});

    // TEST UNIT READY, repeated like Ask().
    Result<Nothing> WaitUntilReady(Milliseconds limit);

    // The error with the device's name in front of its text, unless the text begins with it.
    Error Named(const Error& error) const;

    // What has changed since the last time; asking forgets it.
    std::set<Change> TakeChanges() { return std::exchange(m_changes, {}); }

  private:
    enum class Purpose { Look, Act };

    Result<Completion> Execute(const Cdb& cdb, std::span<uint8_t> dataIn, Bytes dataOut, Milliseconds limit,
                               Purpose purpose);
    Result<Completion> SendConnected(const Command& command, Purpose purpose);
    Error StatusError(const Cdb& cdb, const Completion& completion) const;

    std::unique_ptr<Transport> m_transport;
    std::string m_name;
    Waiting& m_waiting;
    Milliseconds m_usualLimit{30'000};
    std::set<Change> m_changes;
};

}  // namespace embedded::attached
