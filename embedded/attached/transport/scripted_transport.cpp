#include "embedded/attached/transport/scripted_transport.h"

#include <algorithm>

#include "embedded/attached/base/device_text.h"

namespace embedded::attached {
namespace {

std::string BytesText(Bytes bytes) {
    std::string text;
    for (const uint8_t byte : bytes) {
        std::string hex = HexText(byte, 2);
        hex.back() = ' ';
        text += hex;
    }
    if (!text.empty()) text.pop_back();
    return text;
}

}  // namespace

void ScriptedTransport::FailCommand(size_t number, Error failure) {
    m_failureIn = number;
    m_failure = std::move(failure);
}

Error ScriptedTransport::Fail(Error failure) {
    if (failure.kind == ErrorKind::Lost || failure.kind == ErrorKind::TimedOut) m_isConnected = false;
    return failure;
}

Error ScriptedTransport::Deviate(const std::string& line) {
    m_deviations.push_back(line);
    return {ErrorKind::Refused, "the script of " + m_address + " was left: " + line, {}};
}

Result<Completion> ScriptedTransport::Send(const Command& command) {
    std::ranges::fill(command.dataIn, uint8_t{0});
    if (!m_isConnected) return Error{ErrorKind::Lost, m_address + " is not connected", {}};
    if (m_failureIn > 0 && --m_failureIn == 0) return Fail(*m_failure);
    if (m_exchanges.empty()) return Deviate("nothing is left for " + BytesText(command.cdb));
    Exchange exchange = std::move(m_exchanges.front());
    m_exchanges.pop_front();
    if (!std::ranges::equal(exchange.cdb, command.cdb)) {
        return Deviate("expected " + BytesText(exchange.cdb) + ", got " + BytesText(command.cdb));
    }
    if (!std::ranges::equal(exchange.dataOut, command.dataOut)) {
        return Deviate("expected the data " + BytesText(exchange.dataOut) + ", got " +
                       BytesText(command.dataOut));
    }
    if (exchange.failure) return Fail(*exchange.failure);
    Completion completion;
    completion.status = exchange.status;
    completion.sense = exchange.sense;
    completion.transferred = std::min(exchange.answer.size(), command.dataIn.size());
    std::copy_n(exchange.answer.begin(), completion.transferred, command.dataIn.begin());
    if (!command.dataOut.empty()) completion.transferred = command.dataOut.size();
    return completion;
}

Result<Nothing> ScriptedTransport::Reconnect() {
    ++m_reconnects;
    if (m_reconnectFailure) return *m_reconnectFailure;
    m_isConnected = true;
    return Nothing();
}

}  // namespace embedded::attached
