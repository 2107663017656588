#include "embedded/service/arguments.h"

#include <cstring>

#include "embedded/model/refusal.h"

namespace embedded {

void RefuseCall(const char* function, const std::string& reason) {
    throw Refuse(Code::InvalidCall, {function, reason});
}

void CheckConstant(bool isRight, const char* function, const char* name) {
    if (!isRight) RefuseCall(function, std::string("the ") + name + " has a value that is not allowed");
}

void CheckFormatOptions(const FormatOptions* options, const char* function) {
    CheckRecord(options, function, "options record");
    const void* end = std::memchr(options->label, '\0', sizeof(options->label));
    CheckConstant(end != nullptr, function, "label");
    CheckConstant(options->alwaysZero == 0, function, "field at 268");
}

}  // namespace embedded
