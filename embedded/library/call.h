#pragma once

#include <memory>
#include <string>

#include "embedded/model/refusal.h"
#include "embedded/sessions/session.h"
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

template <typename Work>
KrvBool SessionCall(KrvCallContext* context, const char* function, const Work& work) noexcept {
    return Call(context, function, [&] { work(*SessionTable::Instance().Find(context->session)); });
}

template <typename LookFunction>
KrvBool LookCall(KrvCallContext* context, const CallInfo& call, const LookFunction& look) noexcept {
    return SessionCall(context, call.function, [&](Session& session) { session.Read(call, look); });
}

// The change returns what it has changed.
template <typename ChangeFunction>
KrvBool ChangeCall(KrvCallContext* context, const CallInfo& call, const ChangeFunction& change) noexcept {
    return SessionCall(context, call.function, [&](Session& session) { session.Write(call, change); });
}

[[noreturn]] void RefuseCall(const char* function, const std::string& reason);

// A key or a record of the caller's: there, and of the size that this library knows.
template <typename Record>
void CheckRecord(const Record* record, const char* function, const char* name) {
    if (record == nullptr) RefuseCall(function, std::string("the ") + name + " is missing");
    if (record->size == sizeof(Record)) return;
    RefuseCall(function, std::string("the ") + name + " has size " + std::to_string(record->size) + ", not " +
                             std::to_string(sizeof(Record)));
}

template <typename Value>
void CheckPointer(const Value* value, const char* function, const char* name) {
    if (value == nullptr) RefuseCall(function, std::string("the ") + name + " is missing");
}

void CheckConstant(bool isRight, const char* function, const char* name);

}  // namespace embedded
