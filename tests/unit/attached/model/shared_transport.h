#pragma once

#include <memory>
#include <utility>

#include "embedded/attached/transport/transport.h"

namespace embedded::attached {

// A way to a model of a device that goes on when the way is closed.
class SharedTransport : public Transport {
  public:
    explicit SharedTransport(std::shared_ptr<Transport> device) : m_device(std::move(device)) {}

    Result<Completion> Send(const Command& command) override { return m_device->Send(command); }
    bool IsConnected() const override { return m_device->IsConnected(); }
    Result<Nothing> Reconnect() override { return m_device->Reconnect(); }
    std::string GetAddress() const override { return m_device->GetAddress(); }

  private:
    std::shared_ptr<Transport> m_device;
};

}  // namespace embedded::attached
