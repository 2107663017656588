#pragma once

#include <gtest/gtest.h>

#include "embedded/attached/device/device.h"
#include "embedded/attached/transport/scripted_transport.h"
#include "tests/unit/attached/hex.h"

namespace embedded::attached {

// A clock whose pauses take no time, and which knows how long they were in all.
class TimelessWaiting : public Waiting {
  public:
    Instant Now() override { return m_now; }
    void Pause(std::chrono::milliseconds time) override { m_now += time; }

    std::chrono::milliseconds GetPaused() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(m_now - Instant());
    }

  private:
    Instant m_now;
};

// A device that plays a script. When a test ends, all of the script has been played and nothing else was
// asked.
class ScriptedDevice {
  public:
    explicit ScriptedDevice(const std::string& name)
        : ScriptedDevice(name, std::make_unique<ScriptedTransport>(name)) {}

    ~ScriptedDevice() {
        EXPECT_EQ(m_transport.GetDeviations(), std::vector<std::string>());
        EXPECT_EQ(m_transport.GetExchangesLeft(), 0U);
    }

    Device& Get() { return m_device; }
    ScriptedTransport& GetTransport() { return m_transport; }
    std::chrono::milliseconds GetPaused() const { return m_waiting.GetPaused(); }

    // The next command that is expected, and what comes of it.
    void Answers(const char* cdb, std::vector<uint8_t> answer) {
        m_transport.Play({Hex(cdb), std::move(answer), 0, {}, {}, {}});
    }
    void Fails(const char* cdb, const SenseCode& code) {
        std::vector<uint8_t> sense = Hex("70 00 x17");
        sense[2] = code.key;
        sense[7] = 10;
        sense[12] = code.asc;
        sense[13] = code.ascq;
        m_transport.Play({Hex(cdb), {}, scsi_status::kCheckCondition, sense, {}, {}});
    }
    void Ends(const char* cdb, uint8_t status) { m_transport.Play({Hex(cdb), {}, status, {}, {}, {}}); }
    void Loses(const char* cdb) {
        m_transport.Play({Hex(cdb), {}, 0, {}, {}, Error{ErrorKind::Lost, "the cable is out", {}}});
    }

  private:
    ScriptedDevice(const std::string& name, std::unique_ptr<ScriptedTransport> transport)
        : m_transport(*transport), m_device(std::move(transport), name, m_waiting) {}

    ScriptedTransport& m_transport;
    TimelessWaiting m_waiting;
    Device m_device;
};

}  // namespace embedded::attached
