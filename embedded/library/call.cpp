#include "embedded/library/call.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>

#include "embedded/model/refusal.h"
#include "embedded/service/arguments.h"

namespace embedded {
namespace {

void Write(KrvErrorInfo& error, int32_t code, std::string_view text) {
    const size_t length = std::min(text.size(), sizeof(error.text) - 1);
    error.code = code;
    std::memcpy(error.text, text.data(), length);
    error.text[length] = '\0';
}

}  // namespace

bool IsUsable(const KrvCallContext* context) noexcept {
    return context != nullptr && context->errorInfo != nullptr &&
           context->errorInfo->size == sizeof(KrvErrorInfo);
}

void CheckContext(const KrvCallContext& context, const char* function) {
    constexpr size_t kHead = offsetof(KrvCallContext, error);
    if (context.headSize == kHead) return;
    RefuseCall(function, "the context's head has size " + std::to_string(context.headSize) + ", not " +
                             std::to_string(kHead));
}

KrvBool WriteFailure(KrvCallContext* context, const char* function) noexcept {
    KrvErrorInfo& error = *context->errorInfo;
    try {
        try {
            throw;
        } catch (const Refusal& refusal) {
            Write(error, refusal.GetCode(), refusal.GetText());
        } catch (const std::bad_alloc&) {
            const Refusal refusal = Refuse(Code::OutOfMemory, {function});
            Write(error, refusal.GetCode(), refusal.GetText());
        } catch (const std::exception& failure) {
            const Refusal refusal = Refuse(Code::InternalFailure, {function, failure.what()});
            Write(error, refusal.GetCode(), refusal.GetText());
        }
    } catch (...) {
        // Not even memory for the sentence.
        Write(error, static_cast<int32_t>(Code::OutOfMemory), "There is not enough memory.");
    }
    return 0;
}

}  // namespace embedded
