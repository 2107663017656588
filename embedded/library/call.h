#pragma once

#include "embedded/library/session_table.h"
#include "embedded/service/service_session.h"
#include "krvcmd/service/sdk/krv_sdk.h"

namespace embedded {

// What every entry point of the library does around its work: the caller's context is checked, the session
// found, and whatever goes wrong inside written into the context. Nothing that is thrown crosses the binary
// interface.

// Writes the failure that is being handled into the context, as far as the context has room for it.
KrvBool WriteFailure(KrvCallContext* context, const char* function) noexcept;

// Whether a failure can be reported in the context; one that is unusable makes a call fail without a text.
bool IsUsable(const KrvCallContext* context) noexcept;

void CheckContext(const KrvCallContext& context, const char* function);

template <typename Work>
KrvBool Call(KrvCallContext* context, const char* function, const Work& work) noexcept {
    if (!IsUsable(context)) return 0;
    try {
        CheckContext(*context, function);
        work();
        return 1;
    } catch (...) {
        return WriteFailure(context, function);
    }
}

// Makes the call in the session that the context names.
template <typename... Parameters, typename... Arguments>
KrvBool SessionCall(KrvCallContext* context, const char* function,
                    void (ServiceSession::*method)(Parameters...), Arguments... arguments) noexcept {
    return Call(context, function,
                [&] { (*SessionTable::Instance().Find(context->session).*method)(arguments...); });
}

}  // namespace embedded
