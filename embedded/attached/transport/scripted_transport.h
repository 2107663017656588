#pragma once

#include <deque>
#include <optional>

#include "embedded/attached/transport/transport.h"

namespace embedded::attached {

// Plays the exchanges that it was told, in this order, without any device. A command that is not the next one
// fails and is noted as a deviation.
class ScriptedTransport : public Transport {
  public:
    struct Exchange {
        std::vector<uint8_t> cdb;
        std::vector<uint8_t> answer;  // data in; more than the buffer takes is cut off
        uint8_t status = scsi_status::kGood;
        std::vector<uint8_t> sense;
        std::vector<uint8_t> dataOut;  // what must be sent
        std::optional<Error> failure;  // instead of an answer; Lost and TimedOut end the connection
    };

    explicit ScriptedTransport(std::string address) : m_address(std::move(address)) {}

    void Play(Exchange exchange) { m_exchanges.push_back(std::move(exchange)); }

    // The `number`th command from now on, counted from 1, fails instead of being played; its exchange stays.
    void FailCommand(size_t number, Error failure);

    // What Reconnect() returns from now on; nothing: it succeeds.
    void FailReconnect(std::optional<Error> failure) { m_reconnectFailure = std::move(failure); }

    // Commands that were not the next one of the script, one line each.
    const std::vector<std::string>& GetDeviations() const { return m_deviations; }
    size_t GetExchangesLeft() const { return m_exchanges.size(); }
    size_t GetReconnectCount() const { return m_reconnects; }

    Result<Completion> Send(const Command& command) override;
    bool IsConnected() const override { return m_isConnected; }
    Result<Nothing> Reconnect() override;
    std::string GetAddress() const override { return m_address; }

  private:
    Error Fail(Error failure);
    Error Deviate(const std::string& line);

    std::string m_address;
    std::deque<Exchange> m_exchanges;
    std::vector<std::string> m_deviations;
    std::optional<Error> m_reconnectFailure;
    std::optional<Error> m_failure;
    size_t m_failureIn = 0;
    size_t m_reconnects = 0;
    bool m_isConnected = true;
};

}  // namespace embedded::attached
