#pragma once

#include "krvcmd/frontend/base/status.h"
#include "krvcmd/service/interrupt/interrupt.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace krvcmd {

// The program-wide session handle; 0 until the library writes it when a session is created.
KrvSession& GetSession();

// A call context, prepared for one call: it carries the current session and an empty error part.
// It cannot be copied, because it holds its own address.
class CallContext {
  public:
    CallContext();
    CallContext(const CallContext&) = delete;
    CallContext& operator=(const CallContext&) = delete;

    KrvCallContext* Get() { return &m_context; }

    // The service error that a failed call has left in the context.
    Status ServiceError() const;

  private:
    KrvCallContext m_context{};
};

// Calls `function` with a fresh context and `arguments`; a zero result becomes a service error.
// After an interruption the call is not made: system error 4.
template <class Function, class... Arguments>
Status CallLibrary(Function function, Arguments... arguments) {
    if (InterruptRequested()) return Status::SystemError(os_code::kInterrupted);
    CallContext context;
    if (function(context.Get(), arguments...) != 0) return {};
    return context.ServiceError();
}

}  // namespace krvcmd
